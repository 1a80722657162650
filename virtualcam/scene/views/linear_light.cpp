#include "scene/views/linear_light.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace doccam::virtualcam {

namespace {

constexpr int kWhite = 65535;

double decoded(double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double encoded(double value) {
    return value <= 0.0031308 ? value * 12.92 : 1.055 * std::pow(value, 1 / 2.4) - 0.055;
}

std::vector<std::uint8_t> encodings() {
    std::vector<std::uint8_t> table(kWhite + 1);
    for (int i = 0; i <= kWhite; ++i) {
        const double level = encoded(i / static_cast<double>(kWhite)) * 255 + 0.5;
        table[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(level);
    }
    return table;
}

} // namespace

cv::Mat toLinear(const cv::Mat& picture) {
    cv::Mat table(1, 256, CV_16U);
    for (int i = 0; i < 256; ++i) {
        table.at<std::uint16_t>(i) = cv::saturate_cast<std::uint16_t>(decoded(i / 255.0) * kWhite);
    }
    cv::Mat linear;
    cv::LUT(picture, table, linear);
    return linear;
}

cv::Mat fromLinear(const cv::Mat& linear) {
    static const std::vector<std::uint8_t> table = encodings();
    cv::Mat picture(linear.size(), CV_8UC(linear.channels()));
    const int samples = linear.cols * linear.channels();
    for (int y = 0; y < linear.rows; ++y) {
        const auto* const from = linear.ptr<float>(y);
        auto* const to = picture.ptr<std::uint8_t>(y);
        for (int i = 0; i < samples; ++i) {
            const float level = std::clamp(from[i], 0.0F, 1.0F) * kWhite;
            to[i] = table[static_cast<std::size_t>(level)];
        }
    }
    return picture;
}

} // namespace doccam::virtualcam
