// The pictures of a session.
#pragma once

#include <opencv2/core/mat.hpp>

#include <memory>

namespace doccam {

// Shared by the record and the session's streaming thread: a callback that is stuck past the end of
// its session still reads pixels that exist. Written by the streaming thread while it runs, but for
// preview, which the host provides before it publishes WEB_BUF.
struct Frames {
    cv::Mat srcimage;                         // nWidth x nHeight
    cv::Mat roimage;                          // the same after a quarter turn
    cv::Mat zoomimage;                        // a second preview; a destination prepared elsewhere
    std::unique_ptr<unsigned char[]> preview; // the pixels of WEB_BUF
};

} // namespace doccam
