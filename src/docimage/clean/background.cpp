#include "docimage/clean/background.h"

#include "base/strips.h"
#include "docimage/clean/black_edge.h"
#include "docimage/clean/page_kernels.h"
#include "docimage/clean/paper.h"
#include "docimage/pixels/work_plane.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace doccam {
namespace {

using Row = std::vector<uchar>;

// At a picture's edge the row beyond it is the one on the other side.
int mirrored(int y, int rows) {
    if (rows == 1) {
        return 0;
    }
    return y < 0 ? -y : (y >= rows ? 2 * (rows - 1) - y : y);
}

// A row of the page or one next to it. A page that is a part of a larger picture ends where that
// one does.
const uchar* rowOrNeighbour(const cv::Mat& page, int y) {
    cv::Size whole;
    cv::Point corner;
    page.locateROI(whole, corner);
    const int row = mirrored(corner.y + y, whole.height) - corner.y;
    return page.data + static_cast<std::ptrdiff_t>(row) * static_cast<std::ptrdiff_t>(page.step);
}

Row copyOfRow(const cv::Mat& page, int y) {
    const uchar* const first = rowOrNeighbour(page, y);
    return {first, first + static_cast<std::size_t>(page.cols) * page.elemSize()};
}

// The rows around each part of the page as they are before any is whitened.
struct Surroundings {
    Surroundings(const cv::Mat& page, const Strips& strips) {
        for (int number = 0; number < strips.count; ++number) {
            const cv::Range part = strips.part(number);
            above.push_back(copyOfRow(page, part.start - 1));
            below.push_back(copyOfRow(page, part.end));
        }
    }

    std::vector<Row> above, below; // by part
};

void whitenRows(cv::Mat& page, cv::Range part, Row above, const Row& below,
                const WorkPlane& margins, const WorkPlane& paper) {
    Row row = above;
    for (int y = part.start; y < part.end; ++y) {
        std::copy_n(page.ptr(y), row.size(), row.begin());
        pageKernels().whitenPaper(
            {
                .above = above.data(),
                .row = row.data(),
                .below = y + 1 < part.end ? page.ptr(y + 1) : below.data(),
                .margin = margins.unpaddedRow(y),
                .paper = paper.unpaddedRow(y),
                .count = page.cols,
            },
            page.ptr(y));
        std::swap(above, row);
    }
}

} // namespace

void whitenBackground(cv::Mat page) {
    const WorkPlane paper = paperOf(page);
    const WorkPlane margins = marginMask(page);
    const Strips strips(page.rows);
    const Surroundings surroundings(page, strips);
    forEachStrip(strips, [&](cv::Range part, int number) {
        const auto i = static_cast<std::size_t>(number);
        whitenRows(page, part, surroundings.above[i], surroundings.below[i], margins, paper);
    });
}

} // namespace doccam
