#include "picture/frame_cache.h"

#include "picture/jpeg.h"
#include "picture/yuyv.h"
#include "scene/scene.h"
#include "scene/unrest.h"

#include <opencv2/imgproc.hpp>

#include <deque>
#include <sstream>
#include <utility>

namespace doccam::virtualcam {

namespace {

constexpr int kJpegQuality = 85;
constexpr std::size_t kKeptPictures = 12;

std::string keyOf(const std::string& photo, const SceneSettings& scene, std::uint32_t pixelFormat,
                  Size size) {
    std::ostringstream key;
    key << pixelFormat << ' ' << size.width << ' ' << size.height << ' ' << scene.noise << ' '
        << photo;
    if (photo.empty()) {
        key << '\n'
            << scene.angle << ' ' << scene.sheetHeight << ' ' << scene.centreX << ' '
            << scene.centreY << ' ' << scene.qrText << '\n'
            << scene.code128Text << '\n'
            << scene.sheet << '\n'
            << scene.desk << ' ' << scene.view.focal << ' ' << scene.view.tilt << ' '
            << scene.view.tiltDirection << ' ' << scene.view.blur << ' ' << scene.light.gradient
            << ' ' << scene.light.gradientDirection << ' ' << scene.light.vignetting << ' '
            << scene.light.handShadow << ' ' << scene.light.glare << ' ' << scene.unrest.form;
    }
    return key.str();
}

// Lamps and hands are added to the picture that lies below them.
std::string keyOfFrame(const std::string& photo, const SceneSettings& scene,
                       std::uint32_t pixelFormat, Size size) {
    const SceneUnrest& unrest = scene.unrest;
    std::ostringstream key;
    key << keyOf(photo, scene, pixelFormat, size);
    if (changesEachFrame(scene)) {
        key << '\n'
            << scene.frame << ' ' << unrest.bands << ' ' << unrest.bandCount << ' '
            << unrest.bandDrift << ' ' << unrest.flicker << ' ' << unrest.flickerFrames << ' '
            << unrest.hand << ' ' << unrest.tremble;
    }
    return key.str();
}

// Caches the last photo read, since one photo serves all sizes.
cv::Mat sharedPhoto(const std::string& path) {
    static std::mutex mutex;
    static std::pair<std::string, cv::Mat>& last = *new std::pair<std::string, cv::Mat>;
    const std::lock_guard lock(mutex);
    if (last.first != path) {
        last = {path, loadPhoto(path)};
    }
    return last.second;
}

cv::Mat cleanPicture(const std::string& photo, const SceneSettings& scene, cv::Size size) {
    if (photo.empty()) {
        return drawScene(scene, size);
    }
    const cv::Mat whole = sharedPhoto(photo);
    cv::Mat scaled;
    cv::resize(whole, scaled, size, 0, 0,
               size.width < whole.cols ? cv::INTER_AREA : cv::INTER_LINEAR);
    return scaled;
}

// Frames that differ only in light and hands share the last picture drawn.
cv::Mat stirredPicture(const std::string& photo, const SceneSettings& scene, cv::Size size) {
    static std::mutex mutex;
    static std::pair<std::string, cv::Mat>& last = *new std::pair<std::string, cv::Mat>;
    cv::Mat picture;
    {
        const std::lock_guard lock(mutex);
        const std::string key = keyOf(photo, scene, 0, {size.width, size.height});
        if (last.first != key) {
            last = {key, cleanPicture(photo, scene, size)};
        }
        picture = last.second.clone();
    }
    stir(picture, scene);
    return picture;
}

} // namespace

PictureFrames::PictureFrames(std::string photo, SceneSettings scene, std::uint32_t pixelFormat,
                             Size size)
  : photo_(std::move(photo))
  , scene_(std::move(scene))
  , pixelFormat_(pixelFormat)
  , size_(size) {}

FrameBytes PictureFrames::frame(std::uint32_t number) {
    const std::uint32_t pattern = scene_.noise > 0 ? number % kPatterns : 0;
    const std::lock_guard lock(mutex_);
    if (!encoded_[pattern]) {
        encoded_[pattern] = encode(pattern);
    }
    return encoded_[pattern];
}

FrameBytes PictureFrames::encode(std::uint32_t pattern) {
    const cv::Size size(size_.width, size_.height);
    cv::Mat picture = changesEachFrame(scene_) ? stirredPicture(photo_, scene_, size)
                                               : cleanPicture(photo_, scene_, size);
    addSensorNoise(picture, scene_.noise, static_cast<int>(pattern));
    return std::make_shared<const std::vector<std::uint8_t>>(
        pixelFormat_ == kMjpeg ? encodeJpeg(picture, kJpegQuality) : encodeYuyv(picture));
}

std::shared_ptr<PictureFrames> cachedFrames(const std::string& photo, const SceneSettings& scene,
                                            std::uint32_t pixelFormat, Size size) {
    using Entry = std::pair<std::string, std::shared_ptr<PictureFrames>>;
    static std::mutex mutex;
    static std::deque<Entry>& cache = *new std::deque<Entry>;
    const std::string key = keyOfFrame(photo, scene, pixelFormat, size);
    const std::lock_guard lock(mutex);
    for (const Entry& entry : cache) {
        if (entry.first == key) {
            return entry.second;
        }
    }
    if (cache.size() == kKeptPictures) {
        cache.pop_front();
    }
    cache.emplace_back(key, std::make_shared<PictureFrames>(photo, scene, pixelFormat, size));
    return cache.back().second;
}

} // namespace doccam::virtualcam
