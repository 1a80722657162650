// The newest frame of a session, reduced for SheetWatch.
#pragma once

#include "camera/camera_session.h"

#include <opencv2/core.hpp>

#include <mutex>

namespace doccam::host {

// Listens to the session's frames during its lifetime, except while the session searches for a
// sheet; call resume() afterwards.
class WatchedFrames {
  public:
    explicit WatchedFrames(CameraSession& session);
    ~WatchedFrames();
    WatchedFrames(const WatchedFrames&) = delete;
    WatchedFrames& operator=(const WatchedFrames&) = delete;

    // Drops the current frame and listens again.
    void resume();

    // The newest frame not yet taken; empty if there is none.
    cv::Mat take();

    // Waits for the next frame.
    cv::Mat next();

  private:
    CameraSession& session_;
    std::mutex mutex_;
    cv::Mat newest_;
};

} // namespace doccam::host
