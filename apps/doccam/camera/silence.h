// When a camera that delivers no frames is given up.
#pragma once

#include <chrono>

namespace doccam::host {

// Counts looks that found no frame. On a busy machine a frame or a still may take many seconds, so
// a look during which this process has worked counts for little. A look counts once however long it
// lasted: a process that was held up has not waited for the camera.
class Silence {
  public:
    // How long one look lasts.
    static constexpr std::chrono::milliseconds kLook{1000};
    // The camera is given up after so many looks during which the process was idle, or after so
    // many looks of any sort.
    static constexpr int kIdleLooks = 20;
    static constexpr int kLooks = 120;

    // Counts one look that found no frame, and the processor time that this process has used in
    // all. True when the camera is to be given up.
    bool outlasts(std::chrono::microseconds processorTime);

    // The processor time that this process has used in all.
    static std::chrono::microseconds processorTime();

  private:
    std::chrono::microseconds before_ = processorTime();
    int idle_ = 0;
    int all_ = 0;
};

} // namespace doccam::host
