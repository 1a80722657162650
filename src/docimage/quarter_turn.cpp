// Turning the live frame by quarters: pixels only change place.
#include "api/library_state.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>

namespace {

enum class Mirror { kUpsideDown = 0, kLeftRight = 1 };

void mirror(cv::Mat& image, Mirror how) {
    cv::flip(image, image, static_cast<int>(how));
}

// Into the session's turned frame, whose memory is reused from frame to frame.
void turnIntoFrame(const cv::Mat& source, Mirror how) {
    cv::Mat& turned = doccam::state().roimage;
    if (turned.empty()) {
        return;
    }
    cv::transpose(source, turned);
    mirror(turned, how);
}

} // namespace

void CamdataRote90(cv::Mat src) {
    turnIntoFrame(src, Mirror::kLeftRight);
}

cv::Mat CamdataRote180(cv::Mat src) {
    mirror(src, Mirror::kUpsideDown);
    mirror(src, Mirror::kLeftRight);
    return src;
}

void CamdataRote270(cv::Mat src) {
    turnIntoFrame(src, Mirror::kUpsideDown);
}
