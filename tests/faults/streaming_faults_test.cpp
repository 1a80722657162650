// Each of the first frames fails, and the camera is unplugged at each of them.
#include "api/library_state.h"
#include "faults/sweep_fixture.h"
#include "support/sanitized.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <cerrno>
#include <ostream>

namespace doccam::test {
namespace {

constexpr int kFrames = 50;

// Of slow builds some frames are enough.
constexpr int kStep = kSanitized ? 7 : 1;

struct Request {
    const char* name;
    int callsBefore; // calls of it before the first frame
    std::vector<int> errors;
};

void PrintTo(const Request& request, std::ostream* out) {
    *out << request.name;
}

class StreamingFaults : public SweepTest, public testing::WithParamInterface<Request> {};

TEST_P(StreamingFaults, EndTheStreamAndLeaveAHealthyLibrary) {
    int sessions = 0;
    for (int frame = 1; frame <= kFrames; frame += kStep) {
        // Each frame meets one of the errors, and each error many of the frames.
        const auto& errors = GetParam().errors;
        const int error = errors[static_cast<std::size_t>(frame) % errors.size()];
        SCOPED_TRACE(described(GetParam().name, error, frame));
        addCallFault(GetParam().name, error, GetParam().callsBefore + frame);
        const int before = framesSeen();
        ASSERT_EQ(open(frame % 2), 0);
        waitForEnds(++sessions);
        EXPECT_EQ(framesSeen() - before, frame - 1);
        EXPECT_TRUE(state().bKeep);
        EXPECT_EQ(closeCamera(), 0);
        expectCleanEnd();
    }
}

INSTANTIATE_TEST_SUITE_P(
    EachRequest, StreamingFaults,
    testing::Values(Request{"VIDIOC_DQBUF", 0, {EAGAIN, EINVAL, EIO, EPIPE, ENODEV, EINTR}},
                    Request{"VIDIOC_QBUF", 5, {EINVAL, EIO, ENODEV}}),
    [](const auto& request) { return std::string(request.param.name + 7); });

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
        ASSERT_EQ(open(frame % 2), 0);
        SetWebFormSize(320, 240);
        waitForEnds(++sessions);
        EXPECT_EQ(closeCamera(), 0);
        state().isShootPhoto = false;
        state().IsRecogBarQr = kNoCodeRequest;
        state().pGetVideoStream = nullptr;
        watchFrames();
        bed_.unplug(earlier_);
        bed_.plug(earlier_);
        getDeviceCount();
        expectCleanEnd();
    }
}

} // namespace
} // namespace doccam::test
