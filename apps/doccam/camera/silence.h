// Deciding when to give up on a camera that delivers no frames.
#pragma once

#include <chrono>

namespace doccam::host {

// Counts looks that found no frame. On a busy machine a frame or a still may take many seconds, so
// a look during which this process has worked counts for little. Each look counts once, however
// long it lasted: a suspended process has not waited for the camera.
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

} // namespace doccam::host
