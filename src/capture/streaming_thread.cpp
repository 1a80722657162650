#include "capture/streaming_thread.h"

#include <csignal>
#include <thread>

namespace doccam {
namespace {

// How often a waiting host looks whether the thread has ended or can be given up.
constexpr std::chrono::milliseconds kSlice{1};

thread_local const StreamingThread* current = nullptr;

// The host's signals are for the host's threads: one that interrupted the wait for a frame would
// end the stream. Those that tell of a thread's own fault, or measure it, stay.
class SignalsBlocked {
  public:
    SignalsBlocked() {
        sigset_t blocked;
        sigfillset(&blocked);
        for (const int own : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS, SIGPROF}) {
            sigdelset(&blocked, own);
        }
        pthread_sigmask(SIG_SETMASK, &blocked, &before_);
    }

    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

  private:
    sigset_t before_{};
};

// What a new thread is given.
struct Start {
    std::shared_ptr<StreamingThread> thread;
    StreamingThread::Work work;
};

void* enter(void* argument) {
    const std::unique_ptr<Start> start(static_cast<Start*>(argument));
    start->thread->run(start->work);
    return nullptr;
}

} // namespace

bool StreamingThread::start(Work work) {
    auto start = std::make_unique<Start>(Start{shared_from_this(), work});
    // Before the thread exists: its first callback may already end the session.
    process_ = getpid();
    const SignalsBlocked inherited;
    if (pthread_create(&thread_, nullptr, enter, start.get()) != 0) {
        process_ = 0;
        return false;
    }
    static_cast<void>(start.release());
    return true;
}

void StreamingThread::run(Work work) {
    current = this;
    work(*this);
    current = nullptr;
    ended_.store(true, std::memory_order_release);
}

bool StreamingThread::isCurrentThread() {
    return current != nullptr;
}

void StreamingThread::retire(Patience patience) {
    if (!ofThisProcess()) {
        return;
    }
    stop_.store(true, std::memory_order_release);
    if (current == this) {
        giveUp(Phase::kInCall);
        return;
    }
    const auto start = std::chrono::steady_clock::now();
    while (!ended_.load(std::memory_order_acquire)) {
        const auto waited = std::chrono::steady_clock::now() - start;
        if ((waited >= patience.inCall && giveUp(Phase::kInCall)) ||
            (waited >= patience.inWriting && giveUp(Phase::kWriting))) {
            return;
        }
        std::this_thread::sleep_for(kSlice);
    }
    pthread_join(thread_, nullptr);
}

bool StreamingThread::giveUp(Phase in) {
    Phase expected = in;
    if (!phase_.compare_exchange_strong(expected, Phase::kAbandoned, std::memory_order_acq_rel)) {
        return false;
    }
    abandonedInWriting_ = in == Phase::kWriting;
    side_.waitUntilIdle();
    pthread_detach(current == this ? pthread_self() : thread_);
    return true;
}

} // namespace doccam
