// OpenCV's C image, for the one operation whose signature uses it.
#pragma once

struct _IplImage; // NOLINT(bugprone-reserved-identifier): OpenCV's C image
using IplImage = _IplImage;

namespace doccam {

// The marginMask() of picture, to be freed by cvReleaseImage. Throws cv::Exception for null.
IplImage* newMarginMask(IplImage* picture);

} // namespace doccam
