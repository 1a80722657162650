// The preview's share of the work on each frame.
#pragma once

#include "state/parts.h"

#include <opencv2/core/mat.hpp>

#include <functional>

namespace doccam {

// What the host is shown, and where in its form.
struct PreviewPicture {
    unsigned char* pixels;
    int width, height;
    int startX, startY;
};

// Hands a picture to the host. False when the library's state may no longer be touched.
using DeliverPicture = std::function<bool(const PreviewPicture&)>;

// Renders frame for the form and for the prepared destination image, whichever exist, and delivers
// each. A null frame renders nothing and delivers what was there. A picture that would not fit, or
// of a part that frame does not have, is left out: the host may be changing the view. Streaming
// thread. False as soon as deliver returns false.
bool showPreview(const record::View& kept, const cv::Mat& destination, const cv::Mat* frame,
                 const DeliverPicture& deliver);

} // namespace doccam
