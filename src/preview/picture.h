// Rendering the visible part of a frame, scaled to the picture's size.
#pragma once

#include "preview/view.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>

namespace doccam {

// The rectangle of the frame that the view shows, in frame pixels.
cv::Rect visiblePart(const View& view);

// Whether part is not empty and lies inside frame.
bool liesInside(const cv::Rect& part, const cv::Mat& frame);

// The bytes of the view's picture, 0 if it has no pixels.
std::size_t pictureBytes(const View& view);

// Scales the part of frame shown by view into out, rows back to back. frame must have three 8-bit
// channels, out room for pictureBytes(view). Throws cv::Exception, writing nothing, if frame is of
// another type, or view has no picture or does not lie inside frame.
void renderPicture(const cv::Mat& frame, const View& view, unsigned char* out);

// The same into out, at out's size. Writes into out's own memory only if out is of frame's type.
void renderInto(const cv::Mat& frame, const View& view, cv::Mat out);

} // namespace doccam
