#include "plain/margins.h"

#include <algorithm>
#include <cstring>

namespace doccam::plain {
namespace {

constexpr int kWhite = 255;

void paint(uchar* pixels, std::size_t count, std::size_t pixelSize) {
    std::memset(pixels, kWhite, count * pixelSize);
}

} // namespace

void paintMargins(cv::Mat& target, const Margins& margins) {
    const std::size_t pixelSize = target.elemSize();
    const auto width = static_cast<std::size_t>(target.cols);
    const int lowestTop = *std::max_element(margins.top.begin(), margins.top.end());
    const int deepestBottom = *std::max_element(margins.bottom.begin(), margins.bottom.end());
    for (int y = 0; y < target.rows; ++y) {
        const auto line = static_cast<std::size_t>(y);
        uchar* const row = target.ptr(y);
        const auto left = static_cast<std::size_t>(margins.left[line]);
        const auto right = static_cast<std::size_t>(margins.right[line]);
        paint(row, left, pixelSize);
        paint(row + (width - right) * pixelSize, right, pixelSize);
        if (y >= lowestTop && y < target.rows - deepestBottom) {
            continue;
        }
        for (std::size_t x = 0; x < width; ++x) {
            if (y < margins.top[x] || y >= target.rows - margins.bottom[x]) {
                paint(row + x * pixelSize, 1, pixelSize);
            }
        }
    }
}

} // namespace doccam::plain
