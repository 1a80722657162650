#include "picture.h"

#include "modules/mjpeg/libav_decoder.h"
#include "picture/frame_cache.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace doccam::bench {
namespace {

std::vector<std::string> photographs() {
    const char* const folder = std::getenv("DOCCAM_PHOTOS");
    std::vector<std::string> paths;
    if (folder == nullptr || *folder == 0) {
        return paths;
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const auto extension = entry.path().extension();
        if (extension == ".jpg" || extension == ".jpeg" || extension == ".png") {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

cv::Mat decoded(const std::vector<std::uint8_t>& jpeg) {
    const auto decoder = makeMjpegDecoder();
    cv::Mat pixels(kHeight, kWidth, CV_8UC3);
    if (decodePicture(*decoder, {.data = jpeg, .wanted = {kWidth, kHeight}}, *decoder->picture) !=
            Decoded::kPicture ||
        !convertPicture(*decoder, kWidth, kHeight, pixels)) {
        throw std::runtime_error("bench: a picture cannot be decoded");
    }
    return pixels;
}

Picture pictureOf(const std::string& photo) {
    using namespace virtualcam;
    const auto frame = [&](std::uint32_t format) {
        return cachedFrames(photo, SceneSettings{}, format, {kWidth, kHeight})->frame(0);
    };
    const FrameBytes jpeg = frame(kMjpeg);
    const std::string name = photo.empty() ? "drawn" : std::filesystem::path(photo).stem();
    return {name, photo, jpeg, frame(kYuyv), decoded(*jpeg)};
}

} // namespace

const std::vector<Picture>& pictures() {
    static const std::vector<Picture> all = [] {
        std::vector<Picture> made;
        for (const std::string& photo : photographs()) {
            made.push_back(pictureOf(photo));
        }
        if (made.empty()) {
            made.push_back(pictureOf({}));
        }
        return made;
    }();
    return all;
}

} // namespace doccam::bench
