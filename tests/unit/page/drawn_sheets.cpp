#include "drawn_sheets.h"

#include "page/quadrilateral.h"

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <numbers>

namespace doccam::test {
namespace {

cv::Matx33d rotation(int axis, double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const int i = (axis + 1) % 3;
    const int j = (axis + 2) % 3;
    cv::Matx33d turned = cv::Matx33d::eye();
    turned(i, i) = c;
    turned(i, j) = -s;
    turned(j, i) = s;
    turned(j, j) = c;
    return turned;
}

} // namespace

page::Corners seenCorners(const Camera& camera, double ratio) {
    const cv::Matx33d turned =
        rotation(0, camera.tilt) * rotation(1, camera.pan) * rotation(2, camera.turn);
    const double x = ratio / 2;
    const cv::Vec3d flat[] = {{-x, -0.5, 0}, {x, -0.5, 0}, {x, 0.5, 0}, {-x, 0.5, 0}};
    page::Corners corners;
    for (std::size_t i = 0; i < 4; ++i) {
        const cv::Vec3d place = turned * flat[i] + cv::Vec3d(0, 0, camera.distance);
        corners[i] = {(camera.picture.width - 1) / 2.0 + camera.focal * place[0] / place[2],
                      (camera.picture.height - 1) / 2.0 + camera.focal * place[1] / place[2]};
    }
    return page::clockwise(corners);
}

cv::Mat drawnSheet(cv::Size picture, const page::Corners& corners, const cv::Scalar& paper,
                   const cv::Scalar& desk) {
    constexpr int kFiner = 4;
    cv::Mat fine(picture * kFiner, CV_8UC3, desk);
    std::vector<cv::Point> outline;
    for (const cv::Point2d& corner : corners) {
        outline.emplace_back(cvRound((corner.x + 0.5) * kFiner - 0.5),
                             cvRound((corner.y + 0.5) * kFiner - 0.5));
    }
    cv::fillConvexPoly(fine, outline, paper);
    cv::Mat drawn;
    cv::resize(fine, drawn, picture, 0, 0, cv::INTER_AREA);
    return drawn;
}

void addNoise(cv::Mat& picture, double deviation) {
    cv::Mat noise(picture.size(), CV_16SC3);
    cv::RNG(5).fill(noise, cv::RNG::NORMAL, 0, deviation);
    cv::add(picture, noise, picture, cv::noArray(), CV_8U);
}

} // namespace doccam::test
