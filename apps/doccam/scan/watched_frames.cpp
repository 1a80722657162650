#include "scan/watched_frames.h"

#include "scan/sheet_watch.h"

#include <utility>

namespace doccam::host {

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
