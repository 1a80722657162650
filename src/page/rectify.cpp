#include "page/rectify.h"

#include "page/aspect_ratio.h"
#include "page/perspective_warp.h"
#include "page/quadrilateral.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::page {
namespace {

// From the page's pixels to the picture's; corners are outer corners of pixels.
cv::Matx33d placeOf(const Corners& corners, cv::Size page) {
    const auto right = static_cast<float>(page.width - 0.5);
    const auto bottom = static_cast<float>(page.height - 0.5);
    const cv::Point2f from[] = {{-0.5F, -0.5F}, {right, -0.5F}, {right, bottom}, {-0.5F, bottom}};
    cv::Point2f to[4];
    std::copy(corners.begin(), corners.end(), to);
    return cv::getPerspectiveTransform(from, to);
}

} // namespace

// As many pixels as the picture has between the corners.
cv::Size rectifiedSize(const Corners& corners, cv::Size picture) {
    const double ratio = std::clamp(aspectRatio(corners, picture), 0.01, 100.0);
    const double area = areaOf(corners);
    const auto side = [](double length) { return std::max(1, static_cast<int>(length)); };
    return {side(std::sqrt(area * ratio)), side(std::sqrt(area / ratio))};
}

cv::Mat rectify(const cv::Mat& picture, const Corners& corners) {
    const cv::Size size = rectifiedSize(corners, picture.size());
    return warped(picture, placeOf(corners, size), size);
}

} // namespace doccam::page
