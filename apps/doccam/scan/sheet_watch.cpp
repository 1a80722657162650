#include "scan/sheet_watch.h"

#include "scan/even_light.h"
#include "scan/sharpness.h"
#include "scan/sheet_comparison.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <vector>

namespace doccam::host {
namespace {

constexpr int kPatience = 150; // frames without rest: five seconds of most cameras
constexpr int kLongestPatience = 40 * kPatience;

} // namespace

Sight SheetWatch::see(const WatchedFrame& frame) {
    grey_ = reducedGrey(frame.pixels);
    const int calm = stillness_.see(grey_);
    if (comesToRest(frame, calm)) {
        restless_ = 0;
        patience_ = kPatience;
        return judge();
    }
    return calm == 0 ? complaint() : Sight::kNothing;
}

bool SheetWatch::comesToRest(const WatchedFrame& frame, int calm) {
    if (calm == 0) {
        sharpness_ = 0;
        judged_ = false;
    }
    if (judged_) {
        return false;
    }
    keepSharpest(frame);
    judged_ = calm == Stillness::kCalmFrames;
    return judged_;
}

void SheetWatch::keepSharpest(const WatchedFrame& frame) {
    const double sharpness = sharpnessOf(frame.pixels);
    if (sharpness > sharpness_) {
        sharpness_ = sharpness;
        frame.pixels.copyTo(sharpest_.pixels);
        sharpest_.jpeg = frame.jpeg;
    }
}

// An empty desk also has an outline: its own.
Sight SheetWatch::judge() {
    if (!showsSomething(grey_)) {
        return isDark(grey_) ? Sight::kDark : Sight::kNothing;
    }
    cv::cvtColor(sharpest_.pixels, picture_, cv::COLOR_RGB2BGR);
    const std::vector<FoundSheet> sheets = findSheets(picture_, 1);
    sheet_ = sheets.empty() ? std::nullopt : std::optional(sheets.front());
    if (!sheet_ && !wholeFrame_) {
        return Sight::kNoSheet;
    }
    seen_ = viewOf(sharpest_.pixels, sheet_ ? std::optional(sheet_->corners) : std::nullopt);
    return taken_ && showSameSheet(*taken_, seen_) ? Sight::kNothing : Sight::kNewSheet;
}

void SheetWatch::know(const cv::Mat& frame, bool cropped) {
    const auto sheets = cropped ? std::vector<FoundSheet>() : findSheets(frame, 1);
    cv::Mat pixels;
    cv::cvtColor(frame, pixels, cv::COLOR_BGR2RGB);
    taken_ = viewOf(pixels, sheets.empty() ? std::nullopt : std::optional(sheets.front().corners));
}

FrameFile SheetWatch::file() const {
    return decoded(sharpest_.jpeg).empty() ? frameFileOf(picture_) : sharpest_.jpeg;
}

// Each time after twice as long.
Sight SheetWatch::complaint() {
    if (++restless_ < std::max(patience_, kPatience)) {
        return Sight::kNothing;
    }
    restless_ = 0;
    patience_ = std::min(2 * std::max(patience_, kPatience), kLongestPatience);
    switch (stillness_.unrest()) {
    case Unrest::kDark:
        return Sight::kDark;
    case Unrest::kFlickering:
        return Sight::kFlickering;
    default:
        return Sight::kMoving;
    }
}

} // namespace doccam::host
