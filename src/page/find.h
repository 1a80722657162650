// Finding sheets of paper in a picture.
#pragma once

#include "page/sheet.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::page {

// At most maximum sheets in the 8-bit picture, grey or blue first, the surest first.
std::vector<Sheet> findSheets(const cv::Mat& picture, std::size_t maximum);

// The sheet near where it was in an earlier picture, quickly; none if it is not there any more.
std::vector<Sheet> findSheetAgain(const cv::Mat& picture, const Sheet& last);

} // namespace doccam::page
