#include "measured_stream.h"

#include <doccam/doccam.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace demo {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kLongestWait{30};

std::atomic<int> frames{0};
std::atomic<Clock::rep> lastArrival{0};

void onFrame(unsigned char* /*pixels*/, int /*width*/, int /*height*/) {
    lastArrival.store(Clock::now().time_since_epoch().count(), std::memory_order_relaxed);
    frames.fetch_add(1, std::memory_order_release);
}

bool waitFor(int count, Clock::time_point deadline) {
    while (frames.load(std::memory_order_acquire) < count) {
        if (Clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace

void countFrames() {
    SetDataCallback(onFrame);
}

double framesPerSecond(int count) {
    const auto deadline = Clock::now() + kLongestWait;
    if (!waitFor(frames + 1, deadline)) {
        return 0;
    }
    const int first = frames;
    const Clock::duration start{lastArrival};
    if (!waitFor(first + count, deadline)) {
        return 0;
    }
    const int arrived = frames - first;
    const std::chrono::duration<double> taken = Clock::duration{lastArrival} - start;
    return arrived / taken.count();
}

} // namespace demo
