// The newest frame of a session, for a thread that looks at frames at its own pace.
#pragma once

#include "camera/camera_session.h"
#include "pages/frame_file.h"

#include <opencv2/core/mat.hpp>

#include <mutex>

namespace doccam::host {

struct WatchedFrame {
    cv::Mat pixels; // 8-bit, red first
    FrameFile jpeg; // as the camera sent it; empty for other formats
};

// Listens to the session's frames during its lifetime. The streaming thread only copies them.
class WatchedFrames {
  public:
    explicit WatchedFrames(CameraSession& session);
    ~WatchedFrames();
    WatchedFrames(const WatchedFrames&) = delete;
    WatchedFrames& operator=(const WatchedFrames&) = delete;

    // Drops the newest frame and listens again, after the session has listened by itself.
    void resume();

    // Swaps frame, whose memory is reused, with the newest frame. False, and frame unchanged, if
    // there is none since the last.
    bool take(WatchedFrame& frame);

  private:
    CameraSession& session_;
    std::mutex mutex_;
    WatchedFrame newest_;
    bool fresh_ = false;
};

} // namespace doccam::host
