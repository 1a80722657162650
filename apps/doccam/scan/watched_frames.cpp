#include "scan/watched_frames.h"

#include <doccam/frame.h>

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
    {
        const std::lock_guard lock(mutex_);
        fresh_ = false;
    }
    session_.feed().listen([this](unsigned char* pixels, int width, int height) {
        const std::lock_guard lock(mutex_);
        cv::Mat(height, width, CV_8UC3, pixels).copyTo(newest_.pixels);
        std::size_t length = 0;
        const unsigned char* const bytes = doccam_frame_bytes(&length);
        newest_.jpeg.assign(bytes, bytes + length);
        fresh_ = true;
    });
}

bool WatchedFrames::take(WatchedFrame& frame) {
    const std::lock_guard lock(mutex_);
    if (!fresh_) {
        return false;
    }
    std::swap(frame, newest_);
    fresh_ = false;
    return true;
}

} // namespace doccam::host
