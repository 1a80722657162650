// A session that fails in one place, and what must remain afterwards.
#pragma once

#include "integration/session_fixture.h"
#include "support/sanitized.h"

#include <string>

namespace doccam::test {

constexpr int kFrames = 50;

// In slow builds only some of the frames.
constexpr int kStep = kSanitized ? 12 : 1;

// The at-th call of a request returns the error.
struct CallFault {
    std::string request;
    int error;
    int at;
};

// As in "VIDIOC_QBUF EIO at 3".
std::string described(const CallFault& fault);

// A request or error as part of a test's name: "QBUF", "EIO".
std::string shortName(const std::string& request);
std::string errorName(int error);

// Before each failing session the cameras are healthy and closed. They offer one small size, so
// that thousands of sessions run quickly. A fault callback reports the end of the stream.
class SweepTest : public SessionTest {
  protected:
    static constexpr int kWidth = 160;
    static constexpr int kHeight = 120;

    SweepTest();
    ~SweepTest() override;

    // Returns openCamera's result.
    static int open(int format);

    // Opens a camera that stops after its first frame; returns openCamera's result.
    int openForOneFrame(int format);

    // Waits for that frame, and expects it to be the one the camera sent.
    void expectTheFrameSent(int format) const;

    // Arms the fault, counting calls from now on.
    void inject(const CallFault& fault);

    // Expects the fault to have struck.
    static void expectStruck(const CallFault& fault);

    // Waits until the stream has ended by itself; returns the reason reported to the host.
    static std::string reasonOfTheEnd();

    // Expects the process to hold that many nodes and mapped buffers, and no other descriptor that
    // was not open before the test.
    void expectHeld(int nodes, int mappings) const;

    // Expects a new session to work and to leave nothing behind.
    void expectHealthySession(int format);

  private:
    int descriptorsBefore_;
};

} // namespace doccam::test
