// A grey picture made of a fuzz input.
#pragma once

#include "fuzz_target.h"
#include "input.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::test {

// Each byte is a pixel, enlarged up to three times, so that mutations change whole modules of
// codes.
inline cv::Mat pictureOf(Input& input) {
    constexpr int kMaximumWidth = 256;
    constexpr std::size_t kMaximumPixels = 1 << 14;
    const int scale = 1 + static_cast<int>(input.byte() % 3);
    const int width = input.side(kMaximumWidth);
    Bytes pixels = exactCopy(input.take(kMaximumPixels));
    pixels.resize(std::max(pixels.size(), static_cast<std::size_t>(width)));
    const int height = static_cast<int>(pixels.size()) / width;
    cv::Mat picture;
    cv::resize(cv::Mat(height, width, CV_8UC1, pixels.data()), picture, cv::Size(), scale, scale,
               cv::INTER_NEAREST);
    return picture;
}

} // namespace doccam::test
