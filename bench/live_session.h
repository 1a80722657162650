// A session of the library with a virtual camera, stepped or run.
#pragma once

#include "bed/test_bed.h"
#include "picture.h"

#include <opencv2/core/mat.hpp>

#include <string>
#include <vector>

namespace doccam::bench {

// The library at work as a host with everything switched on uses it: full size, MJPEG, a quarter
// turn, the sheet's outline, a callback for raw frames and a preview of 800 x 600. The cameras show
// picture, as fast as they are asked. One at a time.
class LiveSession {
  public:
    explicit LiveSession(const Picture& picture);
    ~LiveSession();
    LiveSession(const LiveSession&) = delete;
    LiveSession& operator=(const LiveSession&) = delete;

    // Lets the streaming thread go from one call of the host to the next: one whole frame.
    void nextFrame();

    // Lets the streaming thread run until it is in its stride, and some frames have gone by.
    void start();

    // While it runs: waits until so many more frames have been handed over.
    void waitForFrames(int count) const;

    // Stops it behind a frame, with nothing left to do.
    void stop();

    // The pixels of the last frame, which the stopped streaming thread leaves alone.
    cv::Mat frameView() const;

    // The last JPEGs that the camera has sent. That frame was made from one of them: the library
    // may have fetched the next.
    std::vector<virtualcam::FrameBytes> jpegs() const;

    // The node of a second camera, which the library has not opened.
    std::string otherCamera() const { return bed_.path(other_); }

  private:
    virtualcam::TestBed bed_;
    virtualcam::CameraId own_;
    virtualcam::CameraId other_;
};

} // namespace doccam::bench
