#include "scene/views/camera_view.h"

#include <cmath>

namespace doccam::virtualcam {

namespace {

// Turns about the axis in the desk that is square to direction.
cv::Matx33d tilted(double tilt, double direction) {
    const double angle = tilt * CV_PI / 180;
    const double towards = direction * CV_PI / 180;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const cv::Matx33d about(c, 0, -s, 0, 1, 0, s, 0, c);
    const cv::Matx33d turn(std::cos(towards), std::sin(towards), 0, -std::sin(towards),
                           std::cos(towards), 0, 0, 0, 1);
    return turn.t() * about * turn;
}

} // namespace

cv::Matx33d deskToPicture(const CameraView& view, cv::Size picture, double height) {
    const cv::Matx33d r = tilted(view.tilt, view.tiltDirection);
    const double focal = view.focal * picture.width;
    const cv::Matx33d camera(focal, 0, (picture.width - 1) / 2.0, 0, focal,
                             (picture.height - 1) / 2.0, 0, 0, 1);
    const cv::Matx33d plane(r(0, 0), r(0, 1), -height * r(0, 2), r(1, 0), r(1, 1),
                            -height * r(1, 2), r(2, 0), r(2, 1), view.distance - height * r(2, 2));
    return camera * plane;
}

cv::Point2d project(const cv::Matx33d& homography, cv::Point2d point) {
    const cv::Vec3d seen = homography * cv::Vec3d(point.x, point.y, 1);
    return {seen[0] / seen[2], seen[1] / seen[2]};
}

Quad project(const cv::Matx33d& homography, const Quad& points) {
    Quad seen;
    for (std::size_t i = 0; i < points.size(); ++i) {
        seen[i] = project(homography, points[i]);
    }
    return seen;
}

double area(const Quad& quad) {
    double twice = 0;
    for (std::size_t i = 0; i < quad.size(); ++i) {
        const cv::Point2d next = quad[(i + 1) % quad.size()];
        twice += quad[i].x * next.y - next.x * quad[i].y;
    }
    return std::abs(twice) / 2;
}

} // namespace doccam::virtualcam
