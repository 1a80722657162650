// A YUYV frame to red-first pixels. The peer's formula is close to ours but not the same, and so
// are its pixels.
#include "row.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgproc.hpp>

#include <memory>

namespace doccam::bench {
namespace {

// The conversion reads and writes one pixel pair past the frame.
constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight + 2;

Contest yuyvToRgb(const Picture& picture) {
    const auto source = std::make_shared<std::vector<unsigned char>>(*picture.yuyv);
    source->resize(2 * kPixels, 128);
    const auto target = std::make_shared<std::vector<unsigned char>>(3 * kPixels);
    const cv::Mat yuyvView(kHeight, kWidth, CV_8UC2, source->data());
    const cv::Mat rgbView(kHeight, kWidth, CV_8UC3, target->data());
    const cv::Mat converted(kHeight, kWidth, CV_8UC3);
    return {
        .ours = [=] { yuyv_to_rgb888(source->data(), target->data(), kWidth, kHeight); },
        .peer = [=]() mutable { cv::cvtColor(yuyvView, converted, cv::COLOR_YUV2RGB_YUY2); },
        .same = [=] { return target && cv::PSNR(rgbView, converted) > 35; },
    };
}

const Entry entry({.name = "yuyv_to_rgb888",
                   .peer = "cv::cvtColor YUY2 to RGB",
                   .bound = 1.2,
                   .contest = yuyvToRgb});

} // namespace
} // namespace doccam::bench
