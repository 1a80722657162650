// The frames the emulated cameras send: the drawn sheet in several positions.
#pragma once

#include "device/frame_source.h"
#include "picture/frame_cache.h"

#include <map>
#include <mutex>
#include <optional>
#include <tuple>

namespace doccam::vm {

// Thread-safe. A picture is drawn at its first use, which takes a second in the guest.
class SheetFrames : public virtualcam::FrameSource {
  public:
    static constexpr std::uint32_t kPictures = 3;

    explicit SheetFrames(virtualcam::SceneSettings scene);

    // Picture number % kPictures, or the held one.
    virtualcam::FrameBytes frame(std::uint32_t pixelFormat, virtualcam::Size size,
                                 std::uint32_t number) override;

    // From now on sends only this picture, or with none all of them in turn, as initially.
    void hold(std::optional<std::uint32_t> picture);

    // All pictures as the library decodes them, red first. Call while no session is open.
    std::vector<cv::Mat> pictures(std::uint32_t pixelFormat, virtualcam::Size size);

    const virtualcam::SceneSettings& scene() const { return scene_; }

  private:
    using Key = std::tuple<std::uint32_t, int, int, std::uint32_t>;

    const virtualcam::FrameBytes& drawn(std::uint32_t pixelFormat, virtualcam::Size size,
                                        std::uint32_t picture);

    const virtualcam::SceneSettings scene_;
    std::mutex mutex_;
    std::optional<std::uint32_t> held_;
    std::map<Key, virtualcam::FrameBytes> drawn_;
};

} // namespace doccam::vm
