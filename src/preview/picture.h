// Rendering: the part of a frame that the view shows, scaled to the picture's size.
#pragma once

#include "preview/view.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>

namespace doccam {

// The rectangle of the frame that the view shows, in frame pixels.
cv::Rect visiblePart(const View& view);

// Whether part has pixels, and all of them lie in frame.
bool liesInside(const cv::Rect& part, const cv::Mat& frame);

// The bytes of the view's picture, 0 when it has no pixels.
std::size_t pictureBytes(const View& view);

// Scales what view shows of frame into out, rows back to back. frame has three 8-bit channels, out
// room for pictureBytes(view). Throws cv::Exception, and writes nothing, when frame is of another
// kind, or view has no picture or does not lie inside frame.
void renderPicture(const cv::Mat& frame, const View& view, unsigned char* out);

// The same into out, at the size that out has. Only the pixels change when out is of frame's type.
void renderInto(const cv::Mat& frame, const View& view, cv::Mat out);

} // namespace doccam
