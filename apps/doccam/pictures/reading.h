// Reading untrusted picture files: the only way in which the host reads pictures.
#pragma once

#include "pictures/headers/picture_header.h"

#include <opencv2/core.hpp>

#include <optional>
#include <string>

namespace doccam::host {

// The header of a picture that may be decoded. Throws Failure for a file that is not a readable
// picture, or exceeds the limits.
PictureHeader requirePicture(const std::string& file);

// Reads the picture with flags of cv::imread, after requirePicture. Throws Failure like that, and
// for a picture that cannot be decoded or does not fit into memory.
cv::Mat readPicture(const std::string& file, int flags);

// The size in the header of a picture that this program has written; empty if it is not a picture.
cv::Size sizeOfWritten(const std::string& file);

} // namespace doccam::host
