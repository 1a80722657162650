// Picture files that nobody has checked: the one way in which the host reads pictures.
#pragma once

#include "pictures/headers/picture_header.h"

#include <opencv2/core.hpp>

#include <optional>
#include <string>

namespace doccam::host {

// The header of a picture that may be decoded. Throws Failure for a file that is no readable
// picture, or one beyond the limits.
PictureHeader requirePicture(const std::string& file);

// The picture, read with flags of cv::imread, once requirePicture has let it pass. Throws Failure
// as that does, and for a picture that cannot be decoded or takes more memory than there is.
cv::Mat readPicture(const std::string& file, int flags);

// The sides of a picture that this program has written, as its header says; empty for no picture.
cv::Size sizeOfWritten(const std::string& file);

} // namespace doccam::host
