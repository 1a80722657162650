#include "host/interrupt.h"

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

Interrupt::Interrupt(Patience patience, int code)
  : patience_(patience)
  , code_(code)
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

void Interrupt::watch() const {
    std::optional<Clock::time_point> first;
    std::array<pollfd, 2> events{{{watched_, POLLIN, 0}, {ended_, POLLIN, 0}}};
    if (raised()) { // before this thread existed
        first = Clock::now();
        endUnlessEndedSoon();
    }
    while (poll(events.data(), events.size(), -1) > 0 && events[1].revents == 0) {
        signalfd_siginfo signal{};
        if (read(watched_, &signal, sizeof signal) != sizeof signal) {
            continue;
        }
        if (!first) {
            first = Clock::now();
            eventfd_write(asked_, 1);
            endUnlessEndedSoon();
        } else if (Clock::now() - *first >= kMinimumRepeat) {
            pthread_sigmask(SIG_UNBLOCK, &signals_, nullptr);
            raise(static_cast<int>(signal.ssi_signo));
        }
    }
}

// A driver, a library or a pipe may block the thread that should react to the signal.
void Interrupt::endUnlessEndedSoon() const {
    pollfd ended{ended_, POLLIN, 0};
    if (patience_ && poll(&ended, 1, static_cast<int>(patience_->count())) == 0) {
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
