#include "docimage/clean/background.h"

#include "base/shared_work.h"
#include "docimage/clean/black_edge.h"
#include "docimage/clean/page_kernels.h"
#include "docimage/clean/paper.h"
#include "docimage/pixels/work_plane.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace doccam {
namespace {

using PixelRow = std::vector<uchar>;

int mirrored(int y, int rows) {
    if (rows == 1) {
        return 0;
    }
    return y < 0 ? -y : (y >= rows ? 2 * (rows - 1) - y : y);
}

// Past the edge rows are mirrored: that of the page, or of the larger picture that it is part of.
PixelRow copyOfRow(const cv::Mat& page, int y) {
    cv::Size whole;
    cv::Point corner;
    page.locateROI(whole, corner);
    const std::ptrdiff_t row = mirrored(corner.y + y, whole.height) - corner.y;
    const uchar* const first = page.data + row * static_cast<std::ptrdiff_t>(page.step);
    return {first, first + static_cast<std::size_t>(page.cols) * page.elemSize()};
}

// The planes of the whole page that decide on each pixel.
struct Planes {
    WorkPlane paper;   // 255 where the page is brighter than its surroundings
    WorkPlane margins; // 255 around the sheet
};

// Combines the planes with the page's own pixels, row by row.
void whitenRows(cv::Mat& page, cv::Range part, const Planes& planes, PixelRow above,
                const PixelRow& below) {
    PixelRow row = above;
    for (int y = part.start; y < part.end; ++y) {
        std::copy_n(page.ptr(y), row.size(), row.begin());
        widestKernels<allPageKernels>().whitenPaper(
            {
                .above = above.data(),
                .row = row.data(),
                .below = y + 1 < part.end ? page.ptr(y + 1) : below.data(),
                .margin = planes.margins.unpaddedRow(y),
                .paper = planes.paper.unpaddedRow(y),
                .count = page.cols,
            },
            page.ptr(y));
        std::swap(above, row);
    }
}

} // namespace

void whitenBackground(cv::Mat page) {
    const Planes planes{paperOf(page), marginMask(page)};
    const Strips strips(page.rows);
    // The rows just outside each strip, copied since strips are processed in place.
    std::vector<PixelRow> above, below;
    for (int number = 0; number < strips.count; ++number) {
        const cv::Range part = strips.part(number);
        above.push_back(copyOfRow(page, part.start - 1));
        below.push_back(copyOfRow(page, part.end));
    }
    forEachStrip(strips, [&](cv::Range part, int number) {
        const auto strip = static_cast<std::size_t>(number);
        whitenRows(page, part, planes, above[strip], below[strip]);
    });
}

} // namespace doccam
