#include "host/interrupt.h"

#include "host/failure.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

namespace doccam::host {
namespace {

sigset_t endings() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&signals, signal);
    }
    return signals;
}

} // namespace

Interrupt::Interrupt() {
    const sigset_t signals = endings();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    descriptor_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

Interrupt::~Interrupt() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

// The signal is left in the descriptor, so that every later look sees it too.
bool Interrupt::raised() const {
    pollfd state{descriptor_, POLLIN, 0};
    return poll(&state, 1, 0) > 0 && (state.revents & POLLIN) != 0;
}

void Interrupt::check() const {
    if (raised()) {
        throw Interruption();
    }
}

} // namespace doccam::host
