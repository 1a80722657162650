#include "capture/streaming_thread.h"

#include <algorithm>
#include <csignal>
#include <new>

namespace doccam {
namespace {

thread_local const StreamingThread* current = nullptr;

// The host's signals are for the host's threads: one that interrupted the wait for a frame would
// end the stream. Those that report a thread's own fault, or profile it, stay.
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

struct ThreadArguments {
    std::shared_ptr<StreamingThread> thread;
    StreamingThread::Work work;
};

void* enter(void* argument) {
    const std::unique_ptr<ThreadArguments> start(static_cast<ThreadArguments*>(argument));
    start->thread->run(start->work);
    return nullptr;
}

} // namespace

bool StreamingThread::start(Work work) {
    std::unique_ptr<ThreadArguments> start(new (std::nothrow)
                                               ThreadArguments{shared_from_this(), work});
    if (!start) {
        return false;
    }
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
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
}

bool StreamingThread::isCurrentThread() {
    return current != nullptr;
}

// Either this thread sees the request to stop and wakes the host, or the host sees the new phase.
void StreamingThread::goOutside(Phase to) {
    phase_.store(to, std::memory_order_seq_cst);
    if (stopRequested_.load(std::memory_order_seq_cst)) {
        const std::lock_guard lock(mutex_);
        outsideSince_ = Clock::now();
        changed_.notify_all();
    }
}

void StreamingThread::stop(Patience patience) {
    if (!ofThisProcess()) {
        return;
    }
    stopRequested_.store(true, std::memory_order_seq_cst);
    if (current == this) {
        giveUp(Phase::kInCall);
        return;
    }
    std::unique_lock lock(mutex_);
    const auto start = outsideSince_ = Clock::now();
    const auto last = start + patience.inWriting;
    while (!ended_) {
        // A callback that follows a slow still gets its time, too.
        const auto endOfCall = std::min(outsideSince_ + patience.inCall, last);
        const auto now = Clock::now();
        if ((now >= endOfCall && giveUp(Phase::kInCall)) ||
            (now >= last && giveUp(Phase::kWriting))) {
            return;
        }
        if (now < last) {
            changed_.wait_until(lock, now < endOfCall ? endOfCall : last);
        } else {
            changed_.wait(lock);
        }
    }
    lock.unlock();
    pthread_join(thread_, nullptr);
}

bool StreamingThread::giveUp(Phase in) {
    Phase expected = in;
    if (!phase_.compare_exchange_strong(expected, Phase::kAbandoned)) {
        return false;
    }
    abandonedInWriting_ = in == Phase::kWriting;
    decodeThread_.waitUntilIdle();
    pthread_detach(current == this ? pthread_self() : thread_);
    return true;
}

} // namespace doccam
