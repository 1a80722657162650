// Reading untrusted picture files.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam {

// Like cv::imread with flags, blue first, but rejects files that look like DICOM, as GDCM aborts
// the process on damaged ones. Empty if there is no picture at path. Throws cv::Exception for a
// picture larger than OpenCV accepts.
cv::Mat readPictureFile(const std::string& path, int flags);

} // namespace doccam
