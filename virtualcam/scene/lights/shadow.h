// Shadows in the picture.
#pragma once

#include <opencv2/core.hpp>

#include <vector>

namespace doccam::virtualcam {

// Takes up to strength of the light from scene (CV_32FC3, linear) where the polygon's shadow falls:
// moved by away, its edge blurred, all in pixels.
void castShadow(cv::Mat& scene, const std::vector<cv::Point2d>& polygon, cv::Point2d away,
                double blur, double strength);

// The same with a mask (CV_8U of the scene's size, 255 in the shadow).
void castShadow(cv::Mat& scene, const cv::Mat& mask, double blur, double strength);

} // namespace doccam::virtualcam
