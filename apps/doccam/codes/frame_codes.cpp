#include "codes/frame_codes.h"

#include <opencv2/imgproc.hpp>

namespace doccam::host {
namespace {

// The next frame may be clearer. Ctrl-C, too, waits so long.
constexpr double kSecondsOfAFrame = 0.25;

} // namespace

std::vector<Code> FrameCodes::next(bool onSheets) {
    while (!frames_.take(frame_)) {
        session_.waitForEvent();
    }
    cv::Mat grey;
    cv::cvtColor(frame_.pixels, grey, cv::COLOR_RGB2GRAY);
    std::vector<Code> codes = codesIn(grey, symbologies_, kSecondsOfAFrame).codes;
    if (codes.empty() && onSheets) {
        codes = codesOnSheets(grey, {}, symbologies_, kSecondsOfAFrame).codes;
    }
    return codes;
}

} // namespace doccam::host
