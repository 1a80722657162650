// A part of a picture, turned upright and enlarged.
#pragma once

#include "codes/sighting.h"

#include <opencv2/core/mat.hpp>
#include <opencv2/core/matx.hpp>

namespace doccam::codes {

struct UprightPart {
    cv::Mat grey;
    cv::Matx23d back; // from its pixels to the picture's

    Corners inPicture(const Corners& corners) const;
};

struct PartSize {
    double around = 1; // of the place's size
    double scale = 1;  // less if the part would be too large
};

// What is around the middle of the place, with rows in the direction of angle, in radians.
UprightPart uprightPart(const cv::Mat& grey, const Corners& place, double angle, PartSize wanted);

} // namespace doccam::codes
