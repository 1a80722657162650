// From a frame with a sheet to its page, step by step.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam::plain {

// The picture turned clockwise by degrees, on a canvas that holds all of it.
cv::Mat turned(const cv::Mat& picture, float degrees);

// The sheet at corners, x0 y0 ... x3 y3, cut out of the red-first frame and straightened, blue
// first. Moves the corners into the frame.
cv::Mat straightPage(cv::Mat frame, int* corners);

// The same with margins and background whitened, saved at path as JPEG of quality 85.
void saveCleanPage(const cv::Mat& frame, int* corners, const std::string& path);

} // namespace doccam::plain
