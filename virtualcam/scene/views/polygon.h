// Polygons with corners between pixels.
#pragma once

#include <opencv2/core.hpp>

#include <vector>

namespace doccam::virtualcam {

// Fills a convex polygon; lineType as in OpenCV's drawing.
void fillPolygon(cv::Mat& picture, const std::vector<cv::Point2d>& polygon,
                 const cv::Scalar& colour, int lineType);

} // namespace doccam::virtualcam
