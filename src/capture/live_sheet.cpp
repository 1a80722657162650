#include "capture/live_sheet.h"

#include "docimage/sheet/edge_overlay.h"
#include "page/find.h"
#include "page/same_sheet.h"
#include "state/sheet.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam {
namespace {

constexpr std::size_t kSheets = 8; // among which the last one is recognized
constexpr int kSearchPause = 8;    // frames from a search to the next while none is in sight
constexpr int kReviewPause = 32;   // and while one is only followed

// In the order of boxCorners: clockwise from the lowest corner, of two equally low the right one.
SheetCorners keptCorners(const page::Corners& corners) {
    SheetCorners rounded;
    std::transform(corners.begin(), corners.end(), rounded.begin(), [](const cv::Point2d& corner) {
        return cv::Point(cvRound(corner.x), cvRound(corner.y));
    });
    const auto lowest = std::max_element(
        rounded.begin(), rounded.end(), [](const cv::Point& one, const cv::Point& other) {
            return one.y != other.y ? one.y < other.y : one.x < other.x;
        });
    std::rotate(rounded.begin(), lowest, rounded.end());
    return rounded;
}

} // namespace

void LiveSheet::forget() {
    sheet_.reset();
    isInSight_ = false;
    isDoubtful_ = false;
    framesSinceSearch_ = kSearchPause;
}

const page::Sheet* LiveSheet::outlined(cv::Size frame, int turns) const {
    return isInSight_ && frame == frame_ && turns == turns_ ? &*sheet_ : nullptr;
}

// Fits the sides to changes of colour, so that the order of the channels does not matter.
bool LiveSheet::follow(const cv::Mat& frame) {
    const auto found = page::findSheetAgain(frame, *sheet_);
    if (found.empty()) {
        return false;
    }
    sheet_ = found.front();
    return true;
}

// A hand in the picture may hide a sheet from one search: two without it count.
void LiveSheet::search(const cv::Mat& frame) {
    cv::Mat picture;
    cv::cvtColor(frame, picture, cv::COLOR_RGB2BGR);
    const auto found = page::findSheets(picture, kSheets);
    if (!found.empty()) {
        sheet_ = sheet_ ? page::sameSheet(found, *sheet_, frame.size()) : found.front();
        isInSight_ = true;
        isDoubtful_ = false;
    } else if (isInSight_ && !isDoubtful_) {
        isDoubtful_ = true;
    } else {
        forget();
    }
    framesSinceSearch_ = 0;
}

void LiveSheet::outline(cv::Mat frame, int turns, record::Sheet& kept) {
    if (frame.size() != frame_ || turns != turns_) {
        forget();
        frame_ = frame.size();
        turns_ = turns;
    }
    isInSight_ = sheet_ && follow(frame);
    const int pause = isInSight_ && !isDoubtful_ ? kReviewPause : kSearchPause;
    if (++framesSinceSearch_ >= pause) {
        search(frame);
    }
    if (!isInSight_) {
        return;
    }
    storeEngineCorners(keptCorners(sheet_->corners), kept);
    std::array<cv::Point2f, 4> corners;
    std::copy(sheet_->corners.begin(), sheet_->corners.end(), corners.begin());
    drawOutline(frame, corners);
}

} // namespace doccam
