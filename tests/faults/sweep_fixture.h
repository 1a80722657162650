// A session that fails in one place, and what must be left of it.
#pragma once

#include "integration/session_fixture.h"
#include "support/sanitized.h"

#include <string>

namespace doccam::test {

constexpr int kFrames = 50;

// Of slow builds some frames are enough.
constexpr int kStep = kSanitized ? 12 : 1;

// The at-th call of a request gives the error.
struct CallFault {
    std::string request;
    int error;
    int at;
};

// For messages: "VIDIOC_QBUF EIO at 3".
std::string described(const CallFault& fault);

// The request and the error in a test's name: "QBUF", "EIO".
std::string shortName(const std::string& request);
std::string errorName(int error);

// Before each failing session the cameras are healthy and none is open. They offer one small size,
// so that sessions by the thousand take little time. The host hears of the end of the stream.
class SweepTest : public SessionTest {
  protected:
    static constexpr int kWidth = 160;
    static constexpr int kHeight = 120;

    SweepTest();
    ~SweepTest() override;

    // The result code.
    static int open(int format);

    // Opens, and stops the camera behind the first frame; the result code.
    int openForOneFrame(int format);

    // Waits for that frame, and expects the host to see what the camera has sent.
    void expectTheFrameSent(int format) const;

    // Sets the fault, counted from now on.
    void inject(const CallFault& fault);

    // Expects that the fault has struck where it was set.
    static void expectStruck(const CallFault& fault);

    // Waits until the stream has ended by itself; the reason that the host was told.
    static std::string reasonOfTheEnd();

    // Expects the process to hold so many nodes, but for them no descriptor that it did not hold
    // before the test, and so many mapped buffers.
    void expectHeld(int nodes, int mappings) const;

    // Expects a session to work that opens now, and nothing to be left of it.
    void expectHealthySession(int format);

  private:
    int descriptorsBefore_;
};

} // namespace doccam::test
