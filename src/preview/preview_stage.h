// The preview stage of each frame's processing.
#pragma once

#include "state/parts.h"

#include <opencv2/core/mat.hpp>

#include <functional>

namespace doccam {

// A picture for the host, and its position in the form.
struct PreviewPicture {
    unsigned char* pixels;
    int width, height;
    int startX, startY;
};

// Delivers a picture to the host. Returns false if the library's state may no longer be touched.
using DeliverPicture = std::function<bool(const PreviewPicture&)>;

// Renders frame for the form and for the prepared destination image, as far as they exist, and
// delivers each. With a null frame the existing pictures are delivered. A picture that would not
// fit, or of a part outside frame, is skipped: the host may be changing the view. Streaming thread.
// Returns false as soon as deliver does.
bool showPreview(const record::View& kept, const cv::Mat& destination, const cv::Mat* frame,
                 const DeliverPicture& deliver);

} // namespace doccam
