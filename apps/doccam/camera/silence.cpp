#include "camera/silence.h"

#include <ctime>

namespace doccam::host {
namespace {

// In one look. A process that waits for a silent camera uses a fraction of it; one that works uses
// twice as much, even when it gets only a hundredth of a processor.
constexpr std::chrono::milliseconds kLeastWork{5};

} // namespace

bool Silence::outlasts(std::chrono::microseconds processorTime) {
    idle_ += processorTime - before_ < kLeastWork ? 1 : 0;
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
