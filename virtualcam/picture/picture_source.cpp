#include "picture/picture_source.h"

#include "picture/frame_cache.h"
#include "scene/sheet_change.h"

#include <utility>

namespace doccam::virtualcam {

PictureSource::PictureSource(std::string photo, SceneSettings scene)
  : photo_(std::move(photo))
  , scene_(std::move(scene)) {}

FrameBytes PictureSource::frame(std::uint32_t pixelFormat, Size size, std::uint32_t number) {
    const SceneSettings shown = scene();
    if (shown.repeatFrames == 0) {
        return drawn(shown, pixelFormat, size, number);
    }
    const Repeated key{pixelFormat, size.width, size.height,
                       number % static_cast<std::uint32_t>(shown.repeatFrames)};
    const std::lock_guard lock(repeating_);
    FrameBytes& frame = repeated_[key];
    if (!frame) {
        frame = drawn(shown, pixelFormat, size, std::get<3>(key));
    }
    return frame;
}

FrameBytes PictureSource::drawn(const SceneSettings& scene, std::uint32_t pixelFormat, Size size,
                                std::uint32_t number) const {
    return cachedFrames(photo_, sceneAt(scene, number), pixelFormat, size)->frame(number);
}

SceneSettings PictureSource::scene() const {
    const std::lock_guard lock(mutex_);
    return scene_;
}

void PictureSource::setScene(const SceneSettings& scene) {
    {
        const std::lock_guard lock(repeating_);
        repeated_.clear();
    }
    const std::lock_guard lock(mutex_);
    scene_ = scene;
}

} // namespace doccam::virtualcam
