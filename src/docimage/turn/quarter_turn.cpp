// Turning the live frame by quarters: pixels only change place.
#include "api/library_state.h"
#include "docimage/turn/pixel_turn.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>

#include <functional>

namespace {

using doccam::canTurn;
using doccam::Quarter;

enum class Mirror { kUpsideDown = 0, kLeftRight = 1 };

void mirror(cv::Mat& image, Mirror how) {
    cv::flip(image, image, static_cast<int>(how));
}

bool shareMemory(const cv::Mat& left, const cv::Mat& right) {
    const std::less<> before;
    return before(left.datastart, right.dataend) && before(right.datastart, left.dataend);
}

// For images of other kinds than frames.
void transposeAndMirror(const cv::Mat& source, Quarter quarter, cv::Mat& turned) {
    cv::transpose(source, turned);
    mirror(turned, quarter == Quarter::kClockwise ? Mirror::kLeftRight : Mirror::kUpsideDown);
}

// Into the session's turned frame, whose memory is reused from frame to frame.
void turnIntoFrame(const cv::Mat& source, Quarter quarter) {
    cv::Mat& turned = doccam::state().roimage;
    if (turned.empty()) {
        return;
    }
    if (!canTurn(source)) {
        transposeAndMirror(source, quarter, turned);
        return;
    }
    turned.create(source.cols, source.rows, source.type());
    if (shareMemory(source, turned)) {
        transposeAndMirror(source, quarter, turned);
    } else {
        turnQuarter(source, quarter, turned);
    }
}

} // namespace

void CamdataRote90(cv::Mat src) {
    turnIntoFrame(src, Quarter::kClockwise);
}

cv::Mat CamdataRote180(cv::Mat src) {
    if (canTurn(src)) {
        doccam::turnHalf(src);
    } else {
        mirror(src, Mirror::kUpsideDown);
        mirror(src, Mirror::kLeftRight);
    }
    return src;
}

void CamdataRote270(cv::Mat src) {
    turnIntoFrame(src, Quarter::kCounterClockwise);
}
