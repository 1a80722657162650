// Laying a flat picture into the scene as a camera sees it, every pixel an average of what it
// covers.
#pragma once

#include <opencv2/core/mat.hpp>
#include <opencv2/core/matx.hpp>

namespace doccam::virtualcam {

// Takes pixels of a flat picture of that size, whose outer corners are those of a rectangle of
// width x height millimetres about the origin, to millimetres.
cv::Matx33d pixelsToMillimetres(cv::Size pixels, cv::Size2d millimetres);

// Covers scene (CV_32FC3, linear) with flat (8-bit sRGB, blue first), which placing takes to its
// pixels. opacity is CV_8U of flat's size, or empty for an opaque picture.
void layDown(cv::Mat& scene, const cv::Mat& flat, const cv::Mat& opacity,
             const cv::Matx33d& placing);

} // namespace doccam::virtualcam
