#include "vm/sheet_frames.h"

#include <doccam/decoding.hpp>

namespace doccam::vm {
namespace {

constexpr double kAngleStep = 2.5;

cv::Mat decode(const std::vector<std::uint8_t>& bytes, std::uint32_t pixelFormat,
               virtualcam::Size size) {
    cv::Mat decoded;
    if (pixelFormat == virtualcam::kMjpeg) {
        decoded.create(size.height, size.width, CV_8UC3);
        std::vector<std::uint8_t> data = bytes;
        cv::Mat unused;
        av_decode_init();
        do_excute_image(data.data(), static_cast<int>(data.size()), size.width, size.height,
                        decoded, unused);
        av_decode_deinit();
    } else {
        constexpr int kPairBytes = 4; // the conversion reads one more pair of pixels
        std::vector<std::uint8_t> packed = bytes;
        packed.resize(packed.size() + kPairBytes);
        cv::Mat room(size.height + 1, size.width, CV_8UC3);
        yuyv_to_rgb888(packed.data(), room.data, size.width, size.height);
        decoded = room.rowRange(0, size.height);
    }
    return decoded;
}

} // namespace

SheetFrames::SheetFrames(virtualcam::SceneSettings scene)
  : scene_(std::move(scene)) {}

virtualcam::FrameBytes SheetFrames::frame(std::uint32_t pixelFormat, virtualcam::Size size,
                                          std::uint32_t number) {
    const std::lock_guard lock(mutex_);
    return drawn(pixelFormat, size, held_.value_or(number % kPictures));
}

void SheetFrames::hold(std::optional<std::uint32_t> picture) {
    const std::lock_guard lock(mutex_);
    held_ = picture;
}

const virtualcam::FrameBytes& SheetFrames::drawn(std::uint32_t pixelFormat, virtualcam::Size size,
                                                 std::uint32_t picture) {
    virtualcam::FrameBytes& bytes = drawn_[{pixelFormat, size.width, size.height, picture}];
    if (!bytes) {
        virtualcam::SceneSettings scene = scene_;
        scene.angle += kAngleStep * picture;
        scene.noise = 0;
        bytes = virtualcam::PictureFrames({}, scene, pixelFormat, size).frame(0);
    }
    return bytes;
}

std::vector<cv::Mat> SheetFrames::pictures(std::uint32_t pixelFormat, virtualcam::Size size) {
    std::vector<cv::Mat> all;
    const std::lock_guard lock(mutex_);
    for (std::uint32_t picture = 0; picture < kPictures; ++picture) {
        all.push_back(decode(*drawn(pixelFormat, size, picture), pixelFormat, size));
    }
    return all;
}

} // namespace doccam::vm
