// OpenCV's C image, for the one operation whose signature uses it.
#pragma once

#include "docimage/pixels/work_plane.h"

#include <opencv2/core/mat.hpp>

struct _IplImage; // NOLINT(bugprone-reserved-identifier): OpenCV's C image
using IplImage = _IplImage;

namespace doccam {

// A view of image's pixels; empty for null.
cv::Mat viewOf(IplImage* image);

// A new C image with plane's pixels and zero padding, to be freed by cvReleaseImage.
IplImage* newImageOf(const WorkPlane& plane);

} // namespace doccam
