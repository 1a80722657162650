// A PDF as other programs see it.
#pragma once

#include <opencv2/core.hpp>

#include <string>
#include <vector>

namespace doccam::test {

// Standard output and error of a program.
std::string said(const std::string& commandLine);

// Whether qpdf finds nothing wrong with it.
bool isSound(const std::string& pdf);

// "595.28 x 841.89" of each page, in points.
std::vector<std::string> pageSizes(const std::string& pdf);

// The encodings of its images: "jpeg", "ccitt", "image".
std::vector<std::string> encodings(const std::string& pdf);

// A page as poppler shows it, grey, one pixel a point.
cv::Mat shown(const std::string& pdf, int page = 1, int dpi = 72);

} // namespace doccam::test
