// Pictures of two colours as CCITT G4.
#pragma once

#include "documents/writer/pictures/picture_bytes.h"

namespace doccam::host {

// CCITT G4 of a picture, 8-bit, of which 128 and more is white. Throws DocumentError.
Bytes faxBytes(const cv::Mat& picture);

// Black on white.
ImageStream faxImage(const cv::Mat& picture);

// A stencil through which is painted where mask is not 0.
ImageStream faxStencil(const cv::Mat& mask);

} // namespace doccam::host
