// Ending the streaming thread, as closing a session, opening the next and unloading all need it.
#pragma once

#include "capture/streaming_thread.h"

namespace doccam {

// The right to end the session, which one caller has at a time: a host may close the camera while
// its own callback does the same.
class EndingClaim {
  public:
    enum class IfTaken { kGoWithout, kWait };

    explicit EndingClaim(IfTaken answer);
    ~EndingClaim();

    EndingClaim(const EndingClaim&) = delete;
    EndingClaim& operator=(const EndingClaim&) = delete;

    bool granted() const { return granted_; }

    // Returns when nobody has the right.
    static void waitUntilFree();

  private:
    bool granted_;
};

// Closes the session, in a fixed order with fixed waits, and prints what it releases. Does so also
// without one. Any thread, a callback's too.
void closeSession();

enum class ThreadEnd { kEnded, kGivenUp };

// Ends the streaming thread, if there is one; needs the claim. A thread that is stuck in a callback
// or in the writing of a file is given up; the images and the preview buffer that it may still read
// then stay in memory until it returns, whatever becomes of the library's own references.
ThreadEnd retireStreamingThread();

} // namespace doccam
