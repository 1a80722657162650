// Rendering the visible part of a frame, scaled to the picture's size, and delivering it.
#pragma once

#include "preview/view.h"
#include "state/parts.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <functional>

namespace doccam {

// The bytes of the view's picture, 0 if it has no pixels.
std::size_t pictureBytes(const View& view);

// Scales the part of frame shown by view into out, rows back to back: pictureBytes(view). Throws
// cv::Exception unless frame has three 8-bit channels, and view a picture inside frame.
void renderPicture(const cv::Mat& frame, const View& view, unsigned char* out);

// The same into out, at out's size. Writes into out's own memory only if out is of frame's type.
void renderInto(const cv::Mat& frame, const View& view, cv::Mat out);

// A picture for the host, and its position in the form.
struct PreviewPicture {
    unsigned char* pixels;
    int width, height;
    int startX, startY;
};

// Delivers a picture to the host. Returns false if the library's state may no longer be touched.
using DeliverPicture = std::function<bool(const PreviewPicture&)>;

// Renders frame, unless null, for the form and for the destination image, as far as they exist, and
// delivers each. A picture that would not fit, or of a part outside frame, is skipped: the host may
// be changing the view. False as soon as deliver returns it. Streaming thread.
bool showPreview(const record::View& kept, const cv::Mat& destination, const cv::Mat* frame,
                 const DeliverPicture& deliver);

} // namespace doccam
