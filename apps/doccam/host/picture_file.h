// Picture files, of the types that OpenCV knows.
#pragma once

#include "host/output_file.h"

#include <opencv2/core.hpp>

#include <string>

namespace doccam::host {

// The picture, read with flags of cv::imread. Throws Failure for a file that is no readable one.
cv::Mat readPicture(const std::string& file, int flags);

// Writes the picture at path, a part of target's, as the type that path's extension names; quality
// counts for JPEG. Throws Failure when not all of it could be written.
void writePicture(const OutputFile& target, const std::string& path, const cv::Mat& picture,
                  int quality);

} // namespace doccam::host
