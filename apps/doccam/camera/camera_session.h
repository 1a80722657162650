// An open camera: frames, stills, and a guaranteed close.
#pragma once

#include "camera/cameras.h"
#include "camera/frame_feed.h"
#include "host/interrupt.h"
#include "pages/frame_file.h"

#include <opencv2/core.hpp>

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <string>

namespace doccam::host {

// Counts looks that found no frame, to decide when to give up on a camera. On a busy machine a
// frame may take many seconds, so a look during which this process has worked counts for little.
// Each counts once, however long it lasted: a suspended process has not waited for the camera.
class Silence {
  public:
    // The length of one look.
    static constexpr std::chrono::milliseconds kLook{1000};
    // The camera is given up after this many looks with the process idle, or this many in total.
    static constexpr int kIdleLooks = 20;
    static constexpr int kLooks = 120;

    // Counts a look that found no frame, given the process's total processor time. Returns whether
    // to give up.
    bool outlasts(std::chrono::microseconds processorTime);

    // This process's total processor time.
    static std::chrono::microseconds processorTime();

  private:
    std::chrono::microseconds before_ = processorTime();
    int idle_ = 0;
    int all_ = 0;
};

// At most one at a time, used by one thread. Waits continue as long as frames come; they throw
// Interruption when the process is asked to end, and Failure when the stream has ended or the
// camera is silent; for a still that is not taken, after up to four seconds in the library.
class CameraSession {
  public:
    // Opens the camera and waits for its first frame. Throws Failure when it cannot be opened.
    CameraSession(int camera, const Capture& capture, const Interrupt& interrupt);

    // Closes the camera, which takes about a second.
    ~CameraSession();

    CameraSession(const CameraSession&) = delete;
    CameraSession& operator=(const CameraSession&) = delete;

    int camera() const { return camera_; }

    const Capture& capture() const { return capture_; }

    FrameFeed& feed() { return feed_; }

    // Waits until count more frames have come.
    void waitForFrames(std::uint64_t count);

    // Waits for the next frame or fault, or until one of the others becomes readable. Returns at
    // once if a frame has come since the last wait.
    void waitForEvent(std::initializer_list<int> others = {});

    // Waits as long as that while frames come.
    void waitFor(std::chrono::milliseconds time);

    // A copy of the next frame, red first.
    cv::Mat nextFrame();

    // The next frame as the camera sent it, a JPEG; or else, or if none of several frames arrives
    // sound, a PNG of its pixels, which are turned as set in the library.
    FrameFile nextFrameFile();

    // Searches the next frame for the sheet's outline and keeps it for the following still; false
    // if there is none.
    bool findSheet();

    // Saves a still at path, whole or cropped to the sheet that findSheet found. Throws Failure if
    // there is no file afterwards: kFileFailed if it could not be written.
    void still(const std::string& path, bool crop);

  private:
    void failIfEnded() const;
    void useNextFrame(const FrameFeed::Listener& use);

    int camera_;
    Capture capture_;
    const Interrupt& interrupt_;
    FrameFeed& feed_;
};

// Why openCamera's result code means that the camera cannot be opened and what to do, with a full
// stop.
std::string openingAdvice(int code);

} // namespace doccam::host
