// Each step of opening a camera fails, and each step of closing it.
#include "api/library_state.h"
#include "faults/sweep_fixture.h"
#include "support/sanitized.h"

#include <doccam/doccam.hpp>

#include <algorithm>
#include <cerrno>
#include <ostream>
#include <string>
#include <vector>

namespace doccam::test {
namespace {

struct Step {
    const char* request;
    int times; // how often a session calls it in this part of its life
    int code;  // what openCamera returns when it fails
    bool holdsNode;
    std::vector<int> errors;
    // How many buffers are mapped when the at-th call fails.
    int (*mapped)(int at) = [](int) { return 0; };
};

// Of slow builds the first and the last call are enough.
std::vector<int> callsToFail(const Step& step) {
    std::vector<int> calls;
    for (int at = 1; at <= step.times; at += kSanitized ? std::max(step.times - 1, 1) : 1) {
        calls.push_back(at);
    }
    return calls;
}

int all(int /*at*/) {
    return kBufferCount;
}

int before(int at) {
    return at - 1;
}

// Each buffer is queued as soon as it is mapped.
int upTo(int at) {
    return at;
}

void PrintTo(const Step& step, std::ostream* out) {
    *out << step.request;
}

std::string nameOf(const testing::TestParamInfo<Step>& step) {
    const std::string request = step.param.request;
    return request.rfind("VIDIOC_", 0) == 0 ? request.substr(7) : request;
}

class OpeningFaults : public SweepTest, public testing::WithParamInterface<Step> {};

TEST_P(OpeningFaults, GiveTheirCodeAndLeaveAHealthyLibrary) {
    const Step& step = GetParam();
    getCameraResolutionCount(kIndexOfEarlier);
    for (const int error : step.errors) {
        for (const int at : callsToFail(step)) {
            SCOPED_TRACE(described(step.request, error, at));
            virtualcam::clearCalls();
            addCallFault(step.request, error, at);
            EXPECT_EQ(open(), step.code);
            expectStruck(step.request, error);
            EXPECT_EQ(state().bKeep, step.code == 0);
            EXPECT_EQ(virtualcam::openHandles(), step.holdsNode ? 1 : 0);
            EXPECT_EQ(virtualcam::liveMappings(), step.mapped(at));
            expectCleanEnd();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    EachStep, OpeningFaults,
    testing::Values(
        Step{"open",
             1,
             -3,
             false,
             {ENOENT, EACCES, EPERM, EBUSY, ENODEV, ENXIO, EMFILE, ENFILE, ENOMEM, EINTR}},
        Step{"VIDIOC_QUERYCAP", 1, 0, true, requestErrors(), all},
        Step{"VIDIOC_ENUM_FMT", 3, 0, true, requestErrors(), all},
        Step{"VIDIOC_G_PARM", 1, 0, true, requestErrors(), all},
        Step{"VIDIOC_TRY_FMT", 1, -5, true, requestErrors()},
        Step{"VIDIOC_S_FMT", 1, -6, true, requestErrors()},
        Step{"VIDIOC_G_FMT", 1, -7, true, requestErrors()},
        Step{"VIDIOC_REQBUFS", 1, -8, true, requestErrors()},
        Step{"VIDIOC_QUERYBUF", kBufferCount, -10, true, requestErrors(), before},
        Step{"mmap",
             kBufferCount,
             -11,
             true,
             {EACCES, EAGAIN, EBADF, EINVAL, ENODEV, ENOMEM, EPERM, ENFILE},
             before},
        Step{"VIDIOC_QBUF", kBufferCount, -12, true, requestErrors({EPIPE, EBADR}), upTo},
        Step{"VIDIOC_STREAMON", 1, -13, true, requestErrors({EPIPE, ENOLINK}), all}),
    nameOf);

class ClosingFaults : public SweepTest, public testing::WithParamInterface<Step> {};

TEST_P(ClosingFaults, LeaveAHealthyLibrary) {
    const Step& step = GetParam();
    for (const int error : step.errors) {
        for (const int at : callsToFail(step)) {
            SCOPED_TRACE(described(step.request, error, at));
            ASSERT_EQ(open(), 0);
            virtualcam::clearCalls();
            addCallFault(step.request, error, at);
            EXPECT_EQ(closeCamera(), 0);
            expectStruck(step.request, error);
            EXPECT_FALSE(state().bKeep);
            expectCleanEnd();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    EachStep, ClosingFaults,
    testing::Values(Step{"VIDIOC_STREAMOFF", 1, 0, false, requestErrors({EPIPE, ENOLINK})},
                    Step{"VIDIOC_QUERYBUF", kBufferCount, 0, false, requestErrors()},
                    Step{"close", 1, 0, false, {EBADF, EINTR, EIO}}),
    nameOf);

} // namespace
} // namespace doccam::test
