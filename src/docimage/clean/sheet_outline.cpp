#include "docimage/clean/sheet_outline.h"

#include "docimage/pixels/levels.h"
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

constexpr uchar kInk = 255;

} // namespace

void drawOutline(std::span<const cv::Point> outline, cv::Mat& plane) {
    const auto step = static_cast<std::ptrdiff_t>(plane.step);
    cv::Point previous = outline.back();
    for (const cv::Point point : outline) {
        uchar* const middle = plane.ptr(point.y, point.x); // of a round brush
        middle[-step] = middle[-1] = middle[0] = middle[1] = middle[step] = kInk;
        const cv::Point move = point - previous;
        if (move.x != 0 && move.y != 0) {
            // A diagonal step widens the line on both sides.
            const std::ptrdiff_t beside = move.y * step - move.x;
            for (const cv::Point end : {previous, point}) {
                uchar* const pixel = plane.ptr(end.y, end.x);
                pixel[beside] = pixel[-beside] = kInk;
            }
        }
        previous = point;
    }
}

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
