#include "scene/views/polygon.h"

#include <opencv2/imgproc.hpp>

namespace doccam::virtualcam {

void fillPolygon(cv::Mat& picture, const std::vector<cv::Point2d>& polygon,
                 const cv::Scalar& colour, int lineType) {
    constexpr int kShift = 4; // bits of a pixel's parts
    std::vector<cv::Point> points;
    for (const cv::Point2d& point : polygon) {
        points.emplace_back(cvRound(point.x * (1 << kShift)), cvRound(point.y * (1 << kShift)));
    }
    cv::fillConvexPoly(picture, points, colour, lineType, kShift);
}

} // namespace doccam::virtualcam
