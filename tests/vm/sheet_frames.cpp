#include "vm/sheet_frames.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::vm {
namespace {

constexpr double kAngleStep = 2.5;
constexpr int kBand = 16;

cv::Mat decode(const std::vector<std::uint8_t>& bytes, std::uint32_t pixelFormat,
               virtualcam::Size size) {
    cv::Mat decoded;
    if (pixelFormat == virtualcam::kMjpeg) {
        cv::cvtColor(cv::imdecode(bytes, cv::IMREAD_COLOR), decoded, cv::COLOR_BGR2RGB);
    } else {
        const cv::Mat packed = cv::Mat(bytes).reshape(2, size.height);
        cv::cvtColor(packed, decoded, cv::COLOR_YUV2RGB_YUYV);
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

double worstDifference(const cv::Mat& one, const cv::Mat& other) {
    cv::Mat apart;
    cv::absdiff(one, other, apart);
    double worst = 0;
    for (int row = 0; row < apart.rows; row += kBand) {
        const cv::Scalar mean = cv::mean(apart.rowRange(row, std::min(row + kBand, apart.rows)));
        worst = std::max(worst, (mean[0] + mean[1] + mean[2]) / 3);
    }
    return worst;
}

} // namespace doccam::vm
