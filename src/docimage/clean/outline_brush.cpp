#include "docimage/clean/outline_brush.h"

#include <cstddef>

namespace doccam {
namespace {

constexpr uchar kInk = 255;

// A round brush of three pixels.
void dab(uchar* pixel, std::ptrdiff_t step) {
    pixel[-step] = kInk;
    pixel[-1] = pixel[0] = pixel[1] = kInk;
    pixel[step] = kInk;
}

// A diagonal step widens the line on both sides.
void dabBeside(uchar* pixel, std::ptrdiff_t beside) {
    pixel[beside] = pixel[-beside] = kInk;
}

} // namespace

void drawOutline(std::span<const cv::Point> outline, cv::Mat& plane) {
    const auto step = static_cast<std::ptrdiff_t>(plane.step);
    cv::Point previous = outline.back();
    for (const cv::Point point : outline) {
        dab(plane.ptr(point.y, point.x), step);
        const cv::Point move = point - previous;
        if (move.x != 0 && move.y != 0) {
            const std::ptrdiff_t beside = move.y * step - move.x;
            dabBeside(plane.ptr(previous.y, previous.x), beside);
            dabBeside(plane.ptr(point.y, point.x), beside);
        }
        previous = point;
    }
}

} // namespace doccam
