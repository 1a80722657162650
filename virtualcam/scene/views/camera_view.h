// A pinhole camera above a desk, and where it sees the desk's points.
#pragma once

#include <opencv2/core/matx.hpp>
#include <opencv2/core/types.hpp>

#include <array>

namespace doccam::virtualcam {

using Quad = std::array<cv::Point2d, 4>;

// Points of the desk are in millimetres: x to the right, y down as seen by an upright camera,
// height towards it, the origin where the optical axis meets the desk.
struct CameraView {
    double focal = 1.2; // focal length, of the picture's width
    double tilt = 0;    // degrees between the optical axis and the desk's normal
    double tiltDirection =
        0;                 // degrees, where on the desk the camera stands, clockwise from the right
    double distance = 500; // millimetres from the camera to the origin
};

// Takes points of the plane at that height to pixels of a picture whose principal point is its
// middle; the centre of the top left pixel is (0, 0).
cv::Matx33d deskToPicture(const CameraView& view, cv::Size picture, double height = 0);

cv::Point2d project(const cv::Matx33d& homography, cv::Point2d point);
Quad project(const cv::Matx33d& homography, const Quad& points);

double area(const Quad& quad);

} // namespace doccam::virtualcam
