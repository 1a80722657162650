// Each of the first frames fails.
#include "faults/documented_errors.h"
#include "faults/sweep_fixture.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <ostream>
#include <string>
#include <vector>

namespace doccam::test {
namespace {

struct Failure {
    const char* request;
    int error;
    int callsBefore; // calls of it before the first frame
};

void PrintTo(const Failure& failure, std::ostream* out) {
    *out << failure.request << " " << errorName(failure.error);
}

std::vector<Failure> everyFailure() {
    std::vector<Failure> failures;
    for (const int error : kDequeueErrors) {
        failures.push_back({"VIDIOC_DQBUF", error, 0});
    }
    for (const int error : kQueueErrors) {
        failures.push_back({"VIDIOC_QBUF", error, 5});
    }
    return failures;
}

class StreamingFaults : public SweepTest, public testing::WithParamInterface<Failure> {};

TEST_P(StreamingFaults, EndTheStreamAndLeaveAHealthyLibrary) {
    int round = 0;
    for (int frame = 1; frame <= kFrames; frame += kStep) {
        const CallFault fault{GetParam().request, GetParam().error, GetParam().callsBefore + frame};
        SCOPED_TRACE(described(fault));
        inject(fault);
        watchFrames();
        ASSERT_EQ(open(round % 2), 0);
        EXPECT_EQ(reasonOfTheEnd(), "the driver failed to hand over a frame");
        EXPECT_EQ(framesSeen(), frame - 1);
        expectStruck(fault);
        EXPECT_TRUE(state().session.bKeep);
        EXPECT_EQ(closeCamera(), 0);
        expectHeld(0, 0);
        // After failures in either format the next session takes each format in turn.
        expectHealthySession(round / 2 % 2);
        ++round;
    }
}

INSTANTIATE_TEST_SUITE_P(EachRequestAndError, StreamingFaults, testing::ValuesIn(everyFailure()),
                         [](const auto& failure) {
                             return shortName(failure.param.request) + "_" +
                                    errorName(failure.param.error);
                         });

} // namespace
} // namespace doccam::test
