// Plain sheets on a plain desk, seen by a pinhole camera.
#pragma once

#include "page/sheet.h"

#include <opencv2/core.hpp>

namespace doccam::test {

struct Camera {
    cv::Size picture{1200, 900};
    double focal = 1300; // in pixels
    double tilt = 0;     // of the sheet about its horizontal axis, in degrees
    double pan = 0;      // about its vertical axis
    double turn = 0;     // in its plane
    double distance = 2; // from the sheet's middle, in its heights
};

// The corners of a sheet of that width over height, clockwise from the top left of the picture.
page::Corners seenCorners(const Camera& camera, double ratio);

// Blue first: a sheet of that colour on a desk of another, with anti-aliased sides.
cv::Mat drawnSheet(cv::Size picture, const page::Corners& corners, const cv::Scalar& paper,
                   const cv::Scalar& desk);

// Adds a sensor's noise.
void addNoise(cv::Mat& picture, double deviation);

} // namespace doccam::test
