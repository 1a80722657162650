// Work in a separate process, well-behaved or not.
#include "host/apart.h"
#include "host/failure.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <string>

namespace {

using namespace doccam::host;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class ApartTest : public testing::Test {
  protected:
    // Unblocks the signals that Interrupt blocks, for the other tests.
    ~ApartTest() override { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

    Apart run(const Bounds& bounds, const std::function<void(const Report&)>& work) const {
        return runApart(interrupt_, bounds, work);
    }

    static constexpr std::uint64_t kBytes = 100000000;

  private:
    static sigset_t ownMask() {
        sigset_t mask;
        pthread_sigmask(SIG_BLOCK, nullptr, &mask);
        return mask;
    }

    const sigset_t before_ = ownMask();
    Interrupt interrupt_;
};

TEST_F(ApartTest, ReturnsReportsInOrder) {
    const Apart apart = run({.bytes = kBytes}, [](const Report& report) {
        report("first");
        report("");
        report("last");
    });
    EXPECT_EQ(apart.end, ApartEnd::kDone);
    EXPECT_THAT(apart.reports, ElementsAre("first", "", "last"));
}

TEST_F(ApartTest, RethrowsTheFailureOfItsWork) {
    try {
        run({.bytes = kBytes}, [](const Report&) { throw Failure(kNoCamera, "why"); });
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), kNoCamera);
        EXPECT_STREQ(failure.what(), "why");
    }
}

TEST_F(ApartTest, EndsAfterItsRealTimeEvenIfIdle) {
    const Apart apart = run({.bytes = kBytes, .wall = seconds(1)}, [](const Report& report) {
        report("before");
        while (true) {
            pause();
        }
    });
    EXPECT_EQ(apart.end, ApartEnd::kOutOfTime);
    EXPECT_THAT(apart.reports, ElementsAre("before"));
}

TEST_F(ApartTest, EndsAfterItsProcessorTime) {
    const Apart apart = run({.bytes = kBytes, .processor = seconds(1)}, [](const Report&) {
        while (true) {
            getppid();
        }
    });
    EXPECT_EQ(apart.end, ApartEnd::kOutOfTime);
}

TEST_F(ApartTest, CannotRaiseItsLimits) {
    const Apart apart = run({.bytes = kBytes, .processor = seconds(77)}, [](const Report& report) {
        rlimit limits{};
        getrlimit(RLIMIT_CPU, &limits);
        report(std::to_string(limits.rlim_cur));
        report(std::to_string(limits.rlim_max));
    });
    EXPECT_THAT(apart.reports, ElementsAre("77", "78"));
}

TEST_F(ApartTest, AcceptsAtMostAMebibyteOfReports) {
    const Apart apart = run({.bytes = kBytes}, [](const Report& report) {
        const std::string much(100000, 'x');
        while (true) {
            report(much);
        }
    });
    EXPECT_EQ(apart.end, ApartEnd::kCrashed);
    EXPECT_THAT(apart.reports, IsEmpty());
}

TEST_F(ApartTest, AcceptsOnlyValidExitCodes) {
    for (const int code : {-2, 0, 6, 77, 131}) {
        const Apart apart = run({.bytes = kBytes}, [code](const Report& report) {
            report("before");
            throw Failure(static_cast<ExitCode>(code), "text");
        });
        EXPECT_EQ(apart.end, ApartEnd::kCrashed) << code;
        EXPECT_THAT(apart.reports, IsEmpty()) << code;
    }
}

} // namespace
