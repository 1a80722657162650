#include "camera/silence.h"

#include <ctime>

namespace doccam::host {
namespace {

// Per look. Waiting for a silent camera uses a fraction of it; a process at work uses twice as
// much, even with only a hundredth of a processor.
constexpr std::chrono::milliseconds kMinimumWork{5};

} // namespace

bool Silence::outlasts(std::chrono::microseconds processorTime) {
    idle_ += processorTime - before_ < kMinimumWork ? 1 : 0;
    before_ = processorTime;
    ++all_;
    return idle_ >= kIdleLooks || all_ >= kLooks;
}

std::chrono::microseconds Silence::processorTime() {
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec));
}

} // namespace doccam::host
