// A library session with a virtual camera, single-stepped or free-running.
#pragma once

#include "bed/test_bed.h"
#include "picture.h"

#include <opencv2/core/mat.hpp>

#include <string>
#include <vector>

namespace doccam::bench {

// A session with everything switched on: full size, MJPEG, a quarter turn, the sheet's outline, a
// frame callback and a preview of 800 x 600. The cameras send picture as fast as it is dequeued.
// At most one at a time.
class LiveSession {
  public:
    explicit LiveSession(const Picture& picture);
    ~LiveSession();
    LiveSession(const LiveSession&) = delete;
    LiveSession& operator=(const LiveSession&) = delete;

    // Lets the streaming thread run for one whole frame, from one callback to the next.
    void nextFrame();

    // Lets the streaming thread run, and returns after some frames of warm-up.
    void start();

    // While running: waits until count more frames have been delivered.
    void waitForFrames(int count) const;

    // Stops it after a frame, with nothing pending.
    void stop();

    // The pixels of the last frame. Valid while the streaming thread is stopped.
    cv::Mat frameView() const;

    // The last JPEGs that the camera has sent. The last frame was decoded from one of them; the
    // library may already have fetched the next.
    std::vector<virtualcam::FrameBytes> jpegs() const;

    // The node of a second camera, not opened by the library.
    std::string otherCamera() const { return bed_.path(other_); }

  private:
    virtualcam::TestBed bed_;
    virtualcam::CameraId own_;
    virtualcam::CameraId other_;
};

} // namespace doccam::bench
