// Which way up a page is.
#pragma once

#include "documents/text/tesseract.h"

#include <opencv2/core.hpp>

#include <string>

namespace doccam::host {

// The clockwise quarter turns that make the grey page upright; 0 if that is unsure, as for
// photographs. Writes and removes files that begin with stem. Throws Failure and Interruption.
int quarterTurnsOf(const cv::Mat& grey, double dpi, const Tesseract& tesseract,
                   const std::string& stem);

} // namespace doccam::host
