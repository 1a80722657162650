// Each of the first frames fails, and the camera is unplugged at each of them.
#include "api/library_state.h"
#include "faults/sweep_fixture.h"
#include "support/sanitized.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <cerrno>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace doccam::test {
namespace {

constexpr int kFrames = 50;

// Of slow builds some frames are enough.
constexpr int kStep = kSanitized ? 7 : 1;

struct Failure {
    const char* request;
    int callsBefore; // calls of it before the first frame
    int error;
};

void PrintTo(const Failure& failure, std::ostream* out) {
    *out << failure.request << strerrorname_np(failure.error);
}

std::vector<Failure> failures() {
    std::vector<Failure> all;
    for (const int error : requestErrors({EPIPE, EINTR})) {
        all.push_back({"VIDIOC_DQBUF", 0, error});
    }
    for (const int error : requestErrors({EPIPE, EBADR})) {
        all.push_back({"VIDIOC_QBUF", 5, error});
    }
    return all;
}

class StreamingFaults : public SweepTest, public testing::WithParamInterface<Failure> {};

TEST_P(StreamingFaults, EndTheStreamAndLeaveAHealthyLibrary) {
    const auto [request, callsBefore, error] = GetParam();
    int sessions = 0;
    for (int frame = 1; frame <= kFrames; frame += kStep) {
        SCOPED_TRACE(described(request, error, frame));
        virtualcam::clearCalls();
        addCallFault(request, error, callsBefore + frame);
        watchFrames();
        ASSERT_EQ(open(frame % 2), 0);
        waitForEnds(++sessions);
        expectStruck(request, error);
        EXPECT_EQ(framesSeen(), frame - 1);
        EXPECT_TRUE(state().bKeep);
        EXPECT_EQ(closeCamera(), 0);
        expectCleanEnd();
    }
}

INSTANTIATE_TEST_SUITE_P(EachRequest, StreamingFaults, testing::ValuesIn(failures()),
                         [](const auto& failure) {
                             return std::string(failure.param.request + 7) +
                                    strerrorname_np(failure.param.error);
                         });

// Keeps a still, a code and a preview wanted at every frame.
void wantEverything(unsigned char* /*pixels*/, int /*width*/, int /*height*/) {
    state().isShootPhoto = true;
    state().IsRecogBarQr = 1;
}

void ignorePreview(unsigned char* /*pixels*/, int /*width*/, int /*height*/, int /*x*/, int /*y*/) {
}

class Unplugged : public SweepTest {};

TEST_F(Unplugged, AtEveryFrameWithWorkPendingLeavesAHealthyLibrary) {
    const ScratchFolder folder;
    state().imgSavePath.store(folder.file("still.bmp").c_str());
    SetWebDataCallback(ignorePreview);
    int sessions = 0;
    for (int frame = 1; frame <= kFrames; frame += kStep) {
        SCOPED_TRACE(frame);
        state().pGetVideoStream = wantEverything;
        addFrameFault(virtualcam::FaultKind::kUnplug, frame);
        wantEverything(nullptr, 0, 0);
        ASSERT_EQ(open(frame % 2), 0);
        SetWebFormSize(320, 240);
        waitForEnds(++sessions);
        EXPECT_EQ(closeCamera(), 0);
        EXPECT_EQ(virtualcam::openHandles(), 0);
        EXPECT_EQ(virtualcam::liveMappings(), 0);
        state().isShootPhoto = false;
        state().IsRecogBarQr = kNoCodeRequest;
        state().pGetVideoStream = nullptr;
        bed_.unplug(earlier_);
        bed_.plug(earlier_);
        getDeviceCount();
        expectCleanEnd();
    }
}

} // namespace
} // namespace doccam::test
