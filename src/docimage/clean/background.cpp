#include "docimage/clean/background.h"

#include "docimage/clean/black_edge.h"
#include "docimage/clean/neighbour_rows.h"
#include "docimage/clean/page_kernels.h"
#include "docimage/clean/paper.h"
#include "docimage/pixels/work_plane.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace doccam {
namespace {

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
    const NeighbourRows neighbours(page, strips);
    forEachStrip(strips, [&](cv::Range part, int number) {
        const auto strip = static_cast<std::size_t>(number);
        whitenRows(page, part, planes, neighbours.above[strip], neighbours.below[strip]);
    });
}

} // namespace doccam
