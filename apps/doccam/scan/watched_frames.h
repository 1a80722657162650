// The newest frame of a session, reduced for the watch.
#pragma once

#include "camera/camera_session.h"

#include <opencv2/core.hpp>

#include <mutex>

namespace doccam::host {

// Listens to the session's frames while it exists, but for the time in which the session looks for
// a sheet; resume() follows that.
class WatchedFrames {
  public:
    explicit WatchedFrames(CameraSession& session);
    ~WatchedFrames();
    WatchedFrames(const WatchedFrames&) = delete;
    WatchedFrames& operator=(const WatchedFrames&) = delete;

    // Forgets the frame at hand and listens again.
    void resume();

    // The newest frame that has not been taken yet; empty when there is none.
    cv::Mat take();

    // Waits for a frame later than now.
    cv::Mat next();

  private:
    CameraSession& session_;
    std::mutex mutex_;
    cv::Mat newest_;
};

} // namespace doccam::host
