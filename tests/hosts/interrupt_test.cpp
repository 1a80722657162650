#include "host/failure.h"
#include "host/interrupt.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace {

using doccam::host::Interrupt;

// Runs in a death test's child, so that the test's own signals are unaffected.
[[noreturn]] void endWith(bool wellDone) {
    std::_Exit(wellDone ? 0 : 1);
}

void await(const Interrupt& interrupt) {
    pollfd raised{interrupt.descriptor(), POLLIN, 0};
    poll(&raised, 1, -1);
}

TEST(Interrupt, IsRaisedByTheFirstSignalAndStaysRaised) {
    EXPECT_EXIT(
        {
            std::signal(SIGTERM, SIG_DFL);
            const Interrupt interrupt;
            const bool before = interrupt.raised();
            kill(getpid(), SIGTERM);
            await(interrupt);
            endWith(!before && interrupt.raised() && interrupt.raised());
        },
        testing::ExitedWithCode(0), "");
}

TEST(Interrupt, KeepsWaitingOnANewThread) {
    EXPECT_EXIT(
        {
            std::signal(SIGTERM, SIG_DFL);
            Interrupt interrupt;
            interrupt.waitOnNewThread();
            const bool before = interrupt.raised();
            kill(getpid(), SIGTERM);
            await(interrupt);
            endWith(!before);
        },
        testing::ExitedWithCode(0), "");
}

TEST(Interrupt, ThrowsWhenItIsCheckedOnceRaised) {
    EXPECT_EXIT(
        {
            std::signal(SIGINT, SIG_DFL);
            const Interrupt interrupt;
            interrupt.check();
            kill(getpid(), SIGINT);
            await(interrupt);
            try {
                interrupt.check();
            } catch (const doccam::host::Interruption&) {
                endWith(true);
            }
            endWith(false);
        },
        testing::ExitedWithCode(0), "");
}

TEST(Interrupt, EndsTheProcessWhenItIsIgnored) {
    EXPECT_EXIT(
        {
            std::signal(SIGINT, SIG_DFL);
            const Interrupt interrupt;
            kill(getpid(), SIGINT);
            await(interrupt);
            while (true) {
                kill(getpid(), SIGINT);
            }
        },
        testing::KilledBySignal(SIGINT), "");
}

TEST(Interrupt, LeavesAnIgnoredSignalIgnored) {
    EXPECT_EXIT(
        {
            std::signal(SIGHUP, SIG_IGN);
            std::signal(SIGTERM, SIG_DFL);
            sigset_t held;
            sigemptyset(&held);
            pthread_sigmask(SIG_SETMASK, &held, nullptr); // what earlier tests held back
            const Interrupt interrupt;
            pthread_sigmask(SIG_BLOCK, nullptr, &held);
            kill(getpid(), SIGHUP);
            const bool passedOver = !interrupt.raised() && sigismember(&held, SIGHUP) == 0;
            kill(getpid(), SIGTERM);
            await(interrupt);
            endWith(passedOver);
        },
        testing::ExitedWithCode(0), "");
}

TEST(Interrupt, ByCtrlCOnlyAsksToFinishWhereThatIsWanted) {
    EXPECT_EXIT(
        {
            std::signal(SIGINT, SIG_DFL);
            std::signal(SIGTERM, SIG_DFL);
            const Interrupt interrupt(std::chrono::hours(1), 7, Interrupt::CtrlC::kFinishes);
            kill(getpid(), SIGINT);
            await(interrupt);
            const bool before = interrupt.mustEnd();
            kill(getpid(), SIGINT); // the same by another route
            kill(getpid(), SIGTERM);
            while (!interrupt.mustEnd()) {
            }
            endWith(!before && interrupt.raised());
        },
        testing::ExitedWithCode(0), "");
}

TEST(Interrupt, BySigtermAsksForTheEndAtOnce) {
    EXPECT_EXIT(
        {
            std::signal(SIGTERM, SIG_DFL);
            const Interrupt interrupt(std::chrono::hours(1), 7, Interrupt::CtrlC::kFinishes);
            kill(getpid(), SIGTERM);
            await(interrupt);
            endWith(interrupt.mustEnd());
        },
        testing::ExitedWithCode(0), "");
}

TEST(Interrupt, EndsWithLastWordsWhenCtrlCIsRepeated) {
    EXPECT_EXIT(
        {
            std::signal(SIGINT, SIG_DFL);
            Interrupt interrupt(std::chrono::milliseconds(1), 7, Interrupt::CtrlC::kFinishes);
            interrupt.setLastWords("all is kept");
            while (true) {
                kill(getpid(), SIGINT);
            }
        },
        testing::ExitedWithCode(7), "doccam: all is kept\n");
}

} // namespace
