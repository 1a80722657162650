// Each step of opening a camera fails, and each step of closing it.
#include "faults/documented_errors.h"
#include "faults/sweep_fixture.h"
#include "state/library_state.h"
#include "support/printed_text.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>

#include <ostream>
#include <string>
#include <vector>

namespace doccam::test {
namespace {

using testing::HasSubstr;

constexpr int kBuffers = 5;

// The number of buffers left mapped when the at-th call of a step fails.
int noBuffer(int /*at*/) {
    return 0;
}

int buffersBefore(int at) {
    return at - 1;
}

int buffersUpTo(int at) {
    return at;
}

int allBuffers(int /*at*/) {
    return kBuffers;
}

struct Step {
    const char* request;
    int times; // calls of it in this part of a session
    std::vector<int> errors;
    int code = 0; // what openCamera returns when it fails
    int nodes = 0;
    int (*mappings)(int at) = noBuffer;
};

void PrintTo(const Step& step, std::ostream* out) {
    *out << step.request;
}

std::string nameOf(const testing::TestParamInfo<Step>& step) {
    return shortName(step.param.request);
}

class OpeningFaults : public SweepTest, public testing::WithParamInterface<Step> {
  protected:
    void openWith(const CallFault& fault, int format) {
        inject(fault);
        EXPECT_EQ(openForOneFrame(format), GetParam().code);
        expectStruck(fault);
        EXPECT_EQ(state().session.bKeep, GetParam().code == 0);
        if (GetParam().code == 0) {
            expectTheFrameSent(format);
            EXPECT_EQ(closeCamera(), 0);
            virtualcam::resume(earlier_);
            expectHeld(0, 0);
        } else {
            expectHeld(GetParam().nodes, GetParam().mappings(fault.at));
        }
    }
};

TEST_P(OpeningFaults, ReturnTheirCodeAndLeaveAHealthyLibrary) {
    getCameraResolutionCount(kIndexOfEarlier);
    int round = 0;
    for (const int error : GetParam().errors) {
        for (int at = 1; at <= GetParam().times; ++at) {
            const CallFault fault{GetParam().request, error, at};
            SCOPED_TRACE(described(fault));
            openWith(fault, round++ % 2);
            expectHealthySession(kMjpegFormat);
            expectHealthySession(kYuyvFormat);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    EachStep, OpeningFaults,
    testing::Values(Step{"open", 1, kOpenErrors, -3}, Step{"VIDIOC_QUERYCAP", 1, kGeneric},
                    Step{"VIDIOC_ENUM_FMT", 3, kGeneric}, Step{"VIDIOC_G_PARM", 1, kGeneric},
                    Step{"VIDIOC_TRY_FMT", 1, kGeneric, -5, 1},
                    Step{"VIDIOC_S_FMT", 1, kGeneric, -6, 1},
                    Step{"VIDIOC_G_FMT", 1, kGeneric, -7, 1},
                    Step{"VIDIOC_REQBUFS", 1, kGeneric, -8, 1},
                    Step{"VIDIOC_QUERYBUF", kBuffers, kGeneric, -10, 1, buffersBefore},
                    Step{"mmap", kBuffers, kMapErrors, -11, 1, buffersBefore},
                    Step{"VIDIOC_QBUF", kBuffers, kQueueErrors, -12, 1, buffersUpTo},
                    Step{"VIDIOC_STREAMON", 1, kStreamErrors, -13, 1, allBuffers}),
    nameOf);

class ClosingFaults : public SweepTest, public testing::WithParamInterface<Step> {};

TEST_P(ClosingFaults, LeaveAHealthyLibrary) {
    int round = 0;
    for (const int error : GetParam().errors) {
        for (int at = 1; at <= GetParam().times; ++at) {
            const CallFault fault{GetParam().request, error, at};
            SCOPED_TRACE(described(fault));
            watchFrames();
            ASSERT_EQ(open(round++ % 2), 0);
            ASSERT_TRUE(waitForFrames(1));
            inject(fault);
            EXPECT_EQ(closeCamera(), 0);
            expectStruck(fault);
            EXPECT_FALSE(state().session.bKeep);
            EXPECT_EQ(state().session.cam_fd.get(), UniqueFd::kNone);
            expectHeld(0, 0);
            expectHealthySession(kMjpegFormat);
            expectHealthySession(kYuyvFormat);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EachStep, ClosingFaults,
                         testing::Values(Step{"VIDIOC_STREAMOFF", 1, kStreamErrors},
                                         Step{"VIDIOC_QUERYBUF", kBuffers, kGeneric},
                                         Step{"munmap", kBuffers, kUnmapErrors},
                                         Step{"close", 1, kCloseErrors}),
                         nameOf);

TEST_F(SweepTest, ReportsABufferThatCannotBeUnmapped) {
    ASSERT_EQ(open(kYuyvFormat), 0);
    inject({"munmap", EINVAL, 3});
    PrintedText printed;
    closeCamera();
    EXPECT_THAT(printed.take(), HasSubstr("munmap fail!!!\n"));
}

} // namespace
} // namespace doccam::test
