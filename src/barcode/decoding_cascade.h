// Reading a code from a frame by one binarization after another.
//
// Each function returns the text of the first code of the wanted kind, empty if none is found, and
// prints a line for each scan that shows no code at all. Any thread.
#pragma once

#include "barcode/code_scan.h"

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam {

// One scan.
std::string scanOnce(const cv::Mat& grey, CodeKind wanted);

// Scans the picture, then again after an opening that removes thin white lines and specks.
std::string readCodeInBinary(const cv::Mat& bin, CodeKind wanted);

// The same after binarization by Otsu's threshold, local ones, and fixed ones from Otsu's upwards.
std::string readCodeInGrey(const cv::Mat& grey, CodeKind wanted);

// The same for a red-first frame, between two printed lines.
std::string readCodeOnFrame(const cv::Mat& frame, CodeKind wanted);

} // namespace doccam
