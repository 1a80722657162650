#include "page/search/evidence/reduced_colours.h"

#include <opencv2/core/utility.hpp>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace doccam::page {
namespace {

// The sums of factor rows from y on, of each channel by itself.
void sumRows(const cv::Mat& picture, int y, int factor, std::vector<std::uint16_t>& sums) {
    const std::size_t count = sums.size();
    std::fill(sums.begin(), sums.end(), std::uint16_t{0});
    for (int row = y; row < std::min(y + factor, picture.rows); ++row) {
        const unsigned char* const from = picture.ptr(row);
        for (std::size_t i = 0; i < count; ++i) {
            sums[i] = static_cast<std::uint16_t>(sums[i] + from[i]);
        }
    }
}

void reduceGreyRow(const std::uint16_t* sums, int factor, cv::Vec3f* to, int columns) {
    const float scale = 1.0F / static_cast<float>(factor * factor);
    for (int x = 0; x < columns; ++x) {
        int grey = 0;
        for (int i = 0; i < factor; ++i) {
            grey += *sums++;
        }
        to[x] = {static_cast<float>(grey) * scale, 0, 0};
    }
}

void reduceColourRow(const std::uint16_t* sums, int factor, cv::Vec3f* to, int columns) {
    const float scale = 1.0F / static_cast<float>(factor * factor);
    for (int x = 0; x < columns; ++x) {
        int blueSum = 0;
        int greenSum = 0;
        int redSum = 0;
        for (int i = 0; i < factor; ++i, sums += 3) {
            blueSum += sums[0];
            greenSum += sums[1];
            redSum += sums[2];
        }
        const float blue = static_cast<float>(blueSum) * scale;
        const float green = static_cast<float>(greenSum) * scale;
        const float red = static_cast<float>(redSum) * scale;
        to[x] = {0.114F * blue + 0.587F * green + 0.299F * red, red - green,
                 blue - (red + green) / 2};
    }
}

} // namespace

cv::Mat reducedColours(const cv::Mat& picture, int factor) {
    cv::Mat colours(picture.rows / factor, picture.cols / factor, CV_32FC3);
    const auto reduce = picture.channels() == 1 ? reduceGreyRow : reduceColourRow;
    cv::parallel_for_({0, colours.rows}, [&](const cv::Range& rows) {
        std::vector<std::uint16_t> sums(static_cast<std::size_t>(picture.cols) *
                                        static_cast<std::size_t>(picture.channels()));
        for (int y = rows.start; y < rows.end; ++y) {
            sumRows(picture, y * factor, factor, sums);
            reduce(sums.data(), factor, colours.ptr<cv::Vec3f>(y), colours.cols);
        }
    });
    return colours;
}

} // namespace doccam::page
