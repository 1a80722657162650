// Each step of opening a camera fails, and each step of closing it.
#include "api/library_state.h"
#include "faults/sweep_fixture.h"
#include "support/printed_text.h"

#include <doccam/doccam.hpp>

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
};

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
        for (int at = 1; at <= step.times; ++at) {
            SCOPED_TRACE(described(step.request, error, at));
            addCallFault(step.request, error, at);
            EXPECT_EQ(open(), step.code);
            EXPECT_EQ(state().bKeep, step.code == 0);
            EXPECT_EQ(virtualcam::openHandles(), step.holdsNode ? 1 : 0);
            expectCleanEnd();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    EachStep, OpeningFaults,
    testing::Values(
        Step{"open", 1, -3, false, {ENOENT, EACCES, EBUSY, ENODEV, ENXIO, EMFILE, ENFILE, EINTR}},
        Step{"VIDIOC_QUERYCAP", 1, 0, true, {EINVAL, ENOTTY, ENODEV}},
        Step{"VIDIOC_ENUM_FMT", 1, 0, true, {EINVAL, ENODEV}},
        Step{"VIDIOC_G_PARM", 1, 0, true, {EINVAL, ENOTTY, ENODEV}},
        Step{"VIDIOC_TRY_FMT", 1, -5, true, {EINVAL, EBUSY, ENOTTY, EIO, ENODEV}},
        Step{"VIDIOC_S_FMT", 1, -6, true, {EINVAL, EBUSY, EIO, ENODEV}},
        Step{"VIDIOC_G_FMT", 1, -7, true, {EINVAL, ENODEV}},
        Step{"VIDIOC_REQBUFS", 1, -8, true, {EINVAL, EBUSY, ENOMEM, ENODEV}},
        Step{"VIDIOC_QUERYBUF", 5, -10, true, {EINVAL, ENODEV}},
        Step{"mmap", 5, -11, true, {EACCES, EAGAIN, EBADF, EINVAL, ENODEV, ENOMEM}},
        Step{"VIDIOC_QBUF", 5, -12, true, {EINVAL, EIO, EAGAIN, ENODEV}},
        Step{"VIDIOC_STREAMON", 1, -13, true, {EINVAL, EPIPE, ENOLINK, ENOSPC, EIO, ENODEV}}),
    nameOf);

class ClosingFaults : public SweepTest, public testing::WithParamInterface<Step> {};

TEST_P(ClosingFaults, LeaveAHealthyLibrary) {
    const Step& step = GetParam();
    for (const int error : step.errors) {
        for (int at = 1; at <= step.times; ++at) {
            SCOPED_TRACE(described(step.request, error, at));
            ASSERT_EQ(open(), 0);
            addCallFault(step.request, error, at);
            EXPECT_EQ(closeCamera(), 0);
            EXPECT_FALSE(state().bKeep);
            expectCleanEnd();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EachStep, ClosingFaults,
                         testing::Values(Step{"VIDIOC_STREAMOFF", 1, 0, false, {EINVAL, ENODEV}},
                                         Step{"VIDIOC_QUERYBUF", 5, 0, false, {EINVAL, ENODEV}},
                                         Step{"close", 1, 0, false, {EINTR, EIO}}),
                         nameOf);

} // namespace
} // namespace doccam::test
