// A session that fails in one place, and what must be left of it.
#pragma once

#include "integration/session_fixture.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace doccam::test {

// The errors that the kernel documents for every request, and those of one request besides.
std::vector<int> requestErrors(std::initializer_list<int> own = {});

// Before each failing session the cameras are healthy and none is open; the end of the stream is
// heard of.
class SweepTest : public SessionTest {
  protected:
    SweepTest();
    ~SweepTest() override;

    // Opens the small size and returns the result code.
    static int open(int format = kMjpegFormat);

    // Waits until a stream has ended by itself, for the count-th time in this test.
    static void waitForEnds(int count);

    // Expects that the camera has refused a call of request with error since the calls were
    // cleared.
    static void expectStruck(const std::string& request, int error);

    // Closes, and expects a process without anything of the session, in which the next one shows
    // the frames that the camera sends.
    void expectCleanEnd();

  private:
    std::vector<std::string> descriptorsBefore_;
};

// Names of errors for messages: "request EIO at 3".
std::string described(const std::string& request, int error, int at);

} // namespace doccam::test
