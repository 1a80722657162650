// Detecting when a new sheet has come to rest under the camera.
#pragma once

#include "camera/camera_session.h"

#include <opencv2/core.hpp>

#include <mutex>

namespace doccam::host {

// Small enough to compare in every frame, large enough to distinguish pages of text.
inline constexpr int kWatchedWidth = 320;

// The frame, red first, as a grey picture kWatchedWidth pixels wide.
cv::Mat reducedGrey(const cv::Mat& frame);

// The share of pixels, 0 to 1, in which two grey pictures of the same size differ clearly, ignoring
// a change of overall brightness. 1 for pictures of different sizes.
double changedShare(const cv::Mat& one, const cv::Mat& other);

// Whether a grey picture shows more than a uniform surface.
bool showsSomething(const cv::Mat& grey);

// Call with the frames in order. Pictures are 8-bit grey, all of the same size.
class SheetWatch {
  public:
    static constexpr int kCalmFrames = 10;

    // Processes the next frame. True if the picture has hardly changed for kCalmFrames, and differs
    // from the last page taken and from the last picture dismissed.
    bool seesNewPage(const cv::Mat& grey);

    // Whether the picture still equals the one at rest.
    bool isUnmoved(const cv::Mat& grey) const;

    // Records that the picture at rest has been taken as a page, or shows none.
    void noteTaken() { taken_ = rest_; }

    void noteDismissed() { dismissed_ = rest_; }

  private:
    cv::Mat rest_;
    int calm_ = 0;
    cv::Mat taken_;
    cv::Mat dismissed_;
};

// The newest frame of a session, as reducedGrey. Listens to the session's frames during its
// lifetime, except while the session searches for a sheet; call resume() afterwards.
class WatchedFrames {
  public:
    explicit WatchedFrames(CameraSession& session);
    ~WatchedFrames();

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
