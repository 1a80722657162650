#include "docimage/sheet_outline.h"

#include "docimage/outer_outlines.h"
#include "docimage/outline_brush.h"
#include "docimage/strips.h"

#include <algorithm>
#include <cstring>

namespace doccam {
namespace {

constexpr int kSmallRegion = 30000; // pixels

// 1 where the picture is bright, 0 elsewhere.
void markBright(cv::Mat& rows, int level) {
    forEachStrip(Strips(rows.rows), [&](cv::Range part, int /*number*/) {
        for (int y = part.start; y < part.end; ++y) {
            uchar* const row = rows.ptr(y);
            for (int x = 0; x < rows.cols; ++x) {
                row[x] = row[x] > level ? 1 : 0;
            }
        }
    });
}

// A region that touches the picture's edge is outlined just inside of it.
void clearFrame(cv::Mat& rows) {
    rows.row(0).setTo(0);
    rows.row(rows.rows - 1).setTo(0);
    rows.col(0).setTo(0);
    rows.col(rows.cols - 1).setTo(0);
}

// How many outlines there are up to the lowest large one.
std::size_t countToLowestLarge(const OuterOutlines& outlines) {
    std::size_t count = outlines.count();
    while (count > 0 && enclosedArea(outlines[count - 1]) <= kSmallRegion) {
        --count;
    }
    return count;
}

} // namespace

WorkPlane sheetOutline(PageGrey grey) {
    cv::Mat& rows = grey.plane.rows();
    markBright(rows, otsuLevel(grey.levels));
    clearFrame(rows);
    OuterOutlines outlines;
    outlines.search(rows);
    rows.setTo(0);
    for (std::size_t i = countToLowestLarge(outlines); i-- > 0;) {
        drawOutline(outlines[i], rows);
    }
    return grey.plane;
}

} // namespace doccam
