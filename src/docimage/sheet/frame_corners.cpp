#include "docimage/sheet/frame_corners.h"

#include "docimage/sheet/min_area_rectangle.h"
#include "docimage/sheet/sheet_search_kernels.h"

#include <algorithm>

namespace doccam {

std::array<cv::Point2f, 4> frameCorners(const cv::RotatedRect& box) {
    std::array<cv::Point2f, 4> corners = boxCorners(box);
    for (cv::Point2f& corner : corners) {
        corner *= static_cast<float>(kReduction);
    }
    return corners;
}

SheetCorners wholePixels(const std::array<cv::Point2f, 4>& corners) {
    SheetCorners whole;
    std::transform(corners.begin(), corners.end(), whole.begin(), [](cv::Point2f corner) {
        return cv::Point(static_cast<int>(corner.x), static_cast<int>(corner.y));
    });
    return whole;
}

} // namespace doccam
