#include "docimage/clean/sheet_outline.h"

#include "docimage/clean/outline_brush.h"
#include "docimage/pixels/bright_regions.h"
#include "docimage/sheet/outer_outlines.h"

#include <cstddef>

namespace doccam {
namespace {

constexpr int kSmallRegion = 30000; // pixels

// The number of outlines up to and including the lowest large one.
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
    markBrightRegions(rows, grey.levels);
    OuterOutlines outlines;
    outlines.search(rows);
    rows.setTo(0);
    for (std::size_t i = countToLowestLarge(outlines); i-- > 0;) {
        drawOutline(outlines[i], rows);
    }
    return grey.plane;
}

} // namespace doccam
