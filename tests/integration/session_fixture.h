// Tests of whole sessions with virtual cameras: a library in its first state, and its frames.
#pragma once

#include "support/camera_fixture.h"

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam::test {

// Resets every field of the library's state that a test may have changed. No session may be open.
void resetLibrary();

// Registers a frame callback that counts and copies. Call once per test.
void watchFrames();

// Waits until the callback has seen count frames since watchFrames(), or until
// notifyStreamEnded(); returns whether the frames arrived.
bool waitForFrames(int count);

// Wakes those who wait for frames: none will come.
void notifyStreamEnded();

int framesSeen();

// Waits for the STREAMOFF of the session begun since virtualcam::clearCalls().
void waitForStreamOff();

// A copy of the frame that the callback saw last, red first.
cv::Mat lastSeen();

// Two cameras, none open. The library's waits are a hundred times shorter.
class SessionTest : public CameraTest {
  protected:
    static constexpr int kIndexOfEarlier = 0; // bed camera earlier_
    static constexpr int kIndexOfLater = 1;   // bed camera later_

    explicit SessionTest(const Formats& formats = virtualcam::documentCameraFormats());
    ~SessionTest() override;

    // Opens camera 0 at the small size, and expects success.
    static void openSmall(int format);

    // Takes a still and waits for its completion without a time limit; captureImage() itself has
    // one.
    static void takeStill(const std::string& path);

    void addCallFault(const std::string& request, int error, int at = 1);
    void addFrameFault(virtualcam::FaultKind kind, int at, int value = 0);
};

inline constexpr int kMjpegFormat = 0;
inline constexpr int kYuyvFormat = 1;

} // namespace doccam::test
