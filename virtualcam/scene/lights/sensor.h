// From light to the samples of a camera.
#pragma once

#include <opencv2/core.hpp>

namespace doccam::virtualcam {

struct Sensor {
    double defocus = 0.5; // deviation of the blur, in pixels
    double noise = 0.008; // deviation at full scale, of full scale; less in the dark
};

// scene is CV_32FC3, linear; the result 8-bit sRGB.
cv::Mat expose(cv::Mat scene, const Sensor& sensor, cv::RNG& random);

} // namespace doccam::virtualcam
