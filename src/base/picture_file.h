// Reading picture files that nobody has checked.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam {

// As cv::imread with flags, blue first; but a file that looks like a medical scan (DICOM) counts as
// no picture: the library that reads those ends the process over a damaged one. Empty when there is
// no picture at path. Throws cv::Exception for a picture larger than OpenCV takes.
cv::Mat readPictureFile(const std::string& path, int flags);

} // namespace doccam
