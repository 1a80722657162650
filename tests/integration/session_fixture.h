// Tests of whole sessions with virtual cameras: a library in its first state, and its frames.
#pragma once

#include "support/camera_fixture.h"

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam::test {

// Puts every field of the library's state that a test may have changed back to its default. No
// session may be open.
void resetLibrary();

// Registers a frame callback that counts and copies; once per test.
void watchFrames();

// Waits until the callback has seen count frames in all since watchFrames(), or until the stream is
// said to have ended; whether the frames have come.
bool waitForFrames(int count);

// Says that no more frames will come, for those who wait for them.
void tellThatTheStreamEnded();

int framesSeen();

// Waits until the session that began since virtualcam::clearCalls() has been told to end.
void waitForStreamOff();

// A copy of the frame that the callback saw last: rows x columns of red-first pixels.
cv::Mat lastSeen();

// Two cameras, none open. The library's own waits pass a hundred times faster.
class SessionTest : public CameraTest {
  protected:
    static constexpr int kIndexOfEarlier = 0; // bed camera earlier_
    static constexpr int kIndexOfLater = 1;   // bed camera later_

    explicit SessionTest(const Formats& formats = virtualcam::documentCameraFormats());
    ~SessionTest() override;

    // Opens camera 0 with the small size, and expects that to work.
    static void openSmall(int format);

    // Takes a still and waits for its answer as long as this machine takes for it; captureImage()
    // itself gives up before.
    static void takeStill(const std::string& path);

    void addCallFault(const std::string& request, int error, int at = 1);
    void addFrameFault(virtualcam::FaultKind kind, int at, int value = 0);
};

inline constexpr int kMjpegFormat = 0;
inline constexpr int kYuyvFormat = 1;

} // namespace doccam::test
