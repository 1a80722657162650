#include "scan/sheet_watch.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <utility>
#include <vector>

namespace doccam::host {
namespace {

constexpr int kClearChange = 16;       // grey levels, well above a sensor's noise
constexpr double kMovingShare = 0.002; // a finger at the edge of the picture
constexpr double kNewPageShare = 0.01; // consecutive pages of text differ much more
constexpr double kEvenDeviation = 8.0; // grey levels, for an empty desk

int median(const cv::Mat& differences) {
    std::vector<short> values(differences.begin<short>(), differences.end<short>());
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

bool differs(const cv::Mat& picture, const cv::Mat& known, double share) {
    return known.empty() || changedShare(picture, known) > share;
}

} // namespace

cv::Mat reducedGrey(const cv::Mat& frame) {
    const int height = std::max(1, frame.rows * kWatchedWidth / std::max(frame.cols, 1));
    cv::Mat small;
    cv::resize(frame, small, {kWatchedWidth, height}, 0, 0, cv::INTER_AREA);
    cv::cvtColor(small, small, cv::COLOR_RGB2GRAY);
    return small;
}

double changedShare(const cv::Mat& one, const cv::Mat& other) {
    if (one.size() != other.size() || one.empty()) {
        return 1.0;
    }
    cv::Mat differences;
    cv::subtract(one, other, differences, cv::noArray(), CV_16S);
    const int light = median(differences);
    cv::Mat unchanged;
    cv::inRange(differences, light - kClearChange, light + kClearChange, unchanged);
    return 1.0 -
           static_cast<double>(cv::countNonZero(unchanged)) / static_cast<double>(one.total());
}

bool showsSomething(const cv::Mat& grey) {
    cv::Scalar mean;
    cv::Scalar deviation;
    cv::meanStdDev(grey, mean, deviation);
    return deviation[0] > kEvenDeviation;
}

// Compares with the first still frame, not the previous one, or a slow hand would appear at rest.
bool SheetWatch::seesNewPage(const cv::Mat& grey) {
    if (differs(grey, rest_, kMovingShare)) {
        rest_ = grey.clone();
        calm_ = 0;
        return false;
    }
    calm_ = std::min(calm_ + 1, kCalmFrames);
    return calm_ == kCalmFrames && differs(rest_, taken_, kNewPageShare) &&
           differs(rest_, dismissed_, kNewPageShare);
}

bool SheetWatch::isUnmoved(const cv::Mat& grey) const {
    return !differs(grey, rest_, kMovingShare);
}

WatchedFrames::WatchedFrames(CameraSession& session)
  : session_(session) {
    resume();
}

WatchedFrames::~WatchedFrames() {
    session_.feed().listen({});
}

void WatchedFrames::resume() {
    take();
    session_.feed().listen([this](unsigned char* pixels, int width, int height) {
        const cv::Mat reduced = reducedGrey(cv::Mat(height, width, CV_8UC3, pixels));
        const std::lock_guard lock(mutex_);
        newest_ = reduced;
    });
}

cv::Mat WatchedFrames::take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(newest_, {});
}

cv::Mat WatchedFrames::next() {
    take();
    cv::Mat frame;
    while (frame.empty()) {
        session_.waitForEvent();
        frame = take();
    }
    return frame;
}

} // namespace doccam::host
