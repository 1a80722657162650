#include "capture/streaming_thread.h"

#include <csignal>
#include <ctime>

namespace doccam {
namespace {

using std::chrono::milliseconds;

// How often a waiting host looks whether the thread can be given up.
constexpr milliseconds kSlice{50};

timespec fromNow(milliseconds time) {
    timespec at{};
    clock_gettime(CLOCK_REALTIME, &at);
    const auto nanoseconds = at.tv_nsec + time.count() % 1000 * 1'000'000;
    at.tv_sec += time.count() / 1000 + nanoseconds / 1'000'000'000;
    at.tv_nsec = nanoseconds % 1'000'000'000;
    return at;
}

thread_local const StreamingThread* current = nullptr;

// The host's signals are for the host's threads: one that interrupted the wait for a frame would
// end the stream.
class SignalsBlocked {
  public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }

    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

  private:
    sigset_t before_{};
};

} // namespace

bool StreamingThread::start(Entry entry) {
    const SignalsBlocked inherited;
    // Before the thread exists: its first callback may already end the session.
    running_ = true;
    if (pthread_create(&thread_, nullptr, entry, nullptr) != 0) {
        running_ = false;
        return false;
    }
    return true;
}

void StreamingThread::enter() {
    current = this;
}

bool StreamingThread::isCurrent() const {
    return current == this;
}

void StreamingThread::retire(milliseconds patience) {
    if (!running_) {
        return;
    }
    stop_.store(true, std::memory_order_release);
    if (isCurrent()) {
        giveUp();
        return;
    }
    for (milliseconds waited{0}; !joinWithin(kSlice); waited += kSlice) {
        if (waited >= patience && giveUp()) {
            return;
        }
    }
    running_ = false;
}

bool StreamingThread::joinWithin(milliseconds time) {
    const timespec deadline = fromNow(time);
    return pthread_timedjoin_np(thread_, nullptr, &deadline) == 0;
}

bool StreamingThread::giveUp() {
    Phase expected = Phase::kOutside;
    if (!phase_.compare_exchange_strong(expected, Phase::kAbandoned, std::memory_order_acq_rel)) {
        return false;
    }
    pthread_detach(isCurrent() ? pthread_self() : thread_);
    running_ = false;
    return true;
}

} // namespace doccam
