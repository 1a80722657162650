// Reading picture files of every type like OpenCV: JPEG and PNG here, the others in
// the module of formats, which needs a hundred libraries.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam {

// Like cv::imread with flags, blue first, but rejects files that look like DICOM, as GDCM aborts
// the process on damaged ones. Empty if there is no picture at path, and, reported on standard
// error, if it needs the module and that cannot be opened. Throws cv::Exception for a picture
// larger than OpenCV accepts.
cv::Mat readPictureFile(const std::string& path, int flags);

// Whether path's contents, not its name, are of a type that needs the module.
bool needsFormats(const std::string& path);

} // namespace doccam
