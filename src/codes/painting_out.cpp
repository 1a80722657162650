#include "codes/painting_out.h"

#include "codes/corners.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <vector>

namespace doccam::codes {
namespace {

constexpr double kMargin = 2; // pixels around the code

// The lightest level near the corners: the quiet zone's.
unsigned char paperAround(const cv::Mat& grey, const Corners& corners) {
    unsigned char lightest = 0;
    for (const cv::Point2d corner : corners) {
        const cv::Point2d at = corner + (corner - middleOf(corners)) * 0.05;
        const int x = std::clamp(cvRound(at.x), 0, grey.cols - 1);
        const int y = std::clamp(cvRound(at.y), 0, grey.rows - 1);
        lightest = std::max(lightest, grey.at<unsigned char>(y, x));
    }
    return lightest;
}

} // namespace

void paintOut(cv::Mat& grey, const Sighting& code) {
    const cv::Rect2d bounds = boundsOf(code.corners);
    const double farthest = std::max(grey.cols, grey.rows) * 2.0;
    if (bounds.x < -farthest || bounds.y < -farthest || bounds.width > 2 * farthest ||
        bounds.height > 2 * farthest) {
        return;
    }
    std::vector<cv::Point> outline;
    for (const cv::Point2d corner : code.corners) {
        outline.emplace_back(cvRound(corner.x), cvRound(corner.y));
    }
    std::vector<cv::Point> hull;
    cv::convexHull(outline, hull);
    const cv::Scalar paper = cv::Scalar::all(paperAround(grey, code.corners));
    cv::fillConvexPoly(grey, hull, paper);
    cv::polylines(grey, hull, true, paper, 2 * static_cast<int>(kMargin) + 1);
}

} // namespace doccam::codes
