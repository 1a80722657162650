#include "host/interrupt.h"

#include "host/own_output.h"
#include "host/work_folders.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>

namespace doccam::host {
namespace {

using Clock = std::chrono::steady_clock;

// An earlier signal may be the same request by another route, such as a launcher in between.
constexpr std::chrono::milliseconds kMinimumRepeat{500};

bool isIgnored(int signal) {
    struct sigaction action {};

    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

bool isReadable(int descriptor) {
    pollfd state{descriptor, POLLIN, 0};
    return poll(&state, 1, 0) > 0 && (state.revents & POLLIN) != 0;
}

} // namespace

sigset_t blockSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (!isIgnored(signal)) {
            sigaddset(&signals, signal);
        }
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

Interrupt::Interrupt(Patience patience, int code, CtrlC ctrlC)
  : patience_(patience)
  , code_(code)
  , ctrlC_(ctrlC)
  , signals_(blockSignals())
  , watched_(signalfd(-1, &signals_, SFD_CLOEXEC | SFD_NONBLOCK))
  , asked_(eventfd(isReadable(watched_) ? 1 : 0, EFD_CLOEXEC | EFD_NONBLOCK))
  , ended_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
  , thread_([this] { watch(); }) {}

Interrupt::~Interrupt() {
    endThread();
    for (const int descriptor : {asked_, watched_, ended_}) {
        close(descriptor);
    }
}

void Interrupt::endThread() {
    eventfd_write(ended_, 1);
    thread_.join();
}

void Interrupt::waitOnNewThread() {
    endThread();
    eventfd_t ended = 0;
    eventfd_read(ended_, &ended);
    thread_ = std::thread([this] { watch(); });
}

void Interrupt::watch() {
    std::array<pollfd, 2> events{{{watched_, POLLIN, 0}, {ended_, POLLIN, 0}}};
    if (mustEnd_) { // since before this thread existed
        endUnlessEndedSoon();
    }
    while (poll(events.data(), events.size(), -1) > 0 && events[1].revents == 0) {
        signalfd_siginfo signal{};
        if (read(watched_, &signal, sizeof signal) == sizeof signal) {
            onSignal(static_cast<int>(signal.ssi_signo));
        }
    }
}

void Interrupt::onSignal(int number) {
    const bool isFirst = !first_;
    const auto now = Clock::now();
    first_ = first_.value_or(now);
    const bool finishes = ctrlC_ == CtrlC::kFinishes && number == SIGINT;
    const bool isRepeated = now - *first_ >= kMinimumRepeat;
    const bool asksForTheEnd = finishes ? isRepeated : isFirst || ctrlC_ == CtrlC::kFinishes;
    if (asksForTheEnd && !mustEnd_) {
        mustEnd_ = true; // before others can see that it is asked
        eventfd_write(asked_, 1);
        endUnlessEndedSoon();
    } else if (isFirst) {
        eventfd_write(asked_, 1);
    } else if (isRepeated) {
        pthread_sigmask(SIG_UNBLOCK, &signals_, nullptr);
        raise(number);
    }
}

void Interrupt::setLastWords(const std::string& words) {
    const std::lock_guard lock(lastWordsMutex_);
    lastWords_ = words;
}

// A driver, a library or a pipe may block the thread that should react to the signal.
void Interrupt::endUnlessEndedSoon() {
    pollfd ended{ended_, POLLIN, 0};
    if (patience_ && poll(&ended, 1, static_cast<int>(patience_->count())) == 0) {
        const std::lock_guard lock(lastWordsMutex_);
        if (!lastWords_.empty()) {
            complainWithoutWaiting(lastWords_);
        }
        removeWorkFolders();
        _exit(code_);
    }
}

// Never read, so that every later check sees it, too.
bool Interrupt::raised() const {
    return isReadable(asked_);
}

void Interrupt::check() const {
    if (raised()) {
        throw Interruption();
    }
}

} // namespace doccam::host
