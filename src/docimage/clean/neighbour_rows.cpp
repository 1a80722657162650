#include "docimage/clean/neighbour_rows.h"

#include <cstddef>

namespace doccam {
namespace {

int mirrored(int y, int rows) {
    if (rows == 1) {
        return 0;
    }
    return y < 0 ? -y : (y >= rows ? 2 * (rows - 1) - y : y);
}

PixelRow copyOfRow(const cv::Mat& page, int y) {
    cv::Size whole;
    cv::Point corner;
    page.locateROI(whole, corner);
    const std::ptrdiff_t row = mirrored(corner.y + y, whole.height) - corner.y;
    const unsigned char* const first = page.data + row * static_cast<std::ptrdiff_t>(page.step);
    return {first, first + static_cast<std::size_t>(page.cols) * page.elemSize()};
}

} // namespace

NeighbourRows::NeighbourRows(const cv::Mat& page, const Strips& strips) {
    for (int number = 0; number < strips.count; ++number) {
        const cv::Range part = strips.part(number);
        above.push_back(copyOfRow(page, part.start - 1));
        below.push_back(copyOfRow(page, part.end));
    }
}

} // namespace doccam
