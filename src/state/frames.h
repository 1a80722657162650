// The pictures of a session.
#pragma once

#include <opencv2/core/mat.hpp>

#include <memory>

namespace doccam {

// Shared by the record and the streaming thread, so that they outlive a stuck callback. The stream
// writes them while it runs, except preview, which the host allocates before publishing WEB_BUF.
struct Frames {
    cv::Mat srcimage;                         // nWidth x nHeight
    cv::Mat roimage;                          // the same after a quarter turn
    cv::Mat zoomimage;                        // a second preview; a destination prepared elsewhere
    std::unique_ptr<unsigned char[]> preview; // the pixels of WEB_BUF
};

} // namespace doccam
