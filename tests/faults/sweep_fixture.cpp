#include "faults/sweep_fixture.h"

#include "api/library_state.h"

#include <doccam/doccam.hpp>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <iterator>

namespace doccam::test {
namespace {

std::atomic<int> ends{0};

void onFault(int fault, const char* /*message*/) {
    if (fault == DOCCAM_FAULT_STREAM_ENDED) {
        ends.fetch_add(1);
        ends.notify_all();
    }
}

std::size_t descriptors() {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

} // namespace

SweepTest::SweepTest()
  : descriptorsBefore_(descriptors()) {
    ends = 0;
    SetFaultCallback(onFault);
    watchFrames();
}

SweepTest::~SweepTest() {
    SetFaultCallback(nullptr);
}

int SweepTest::open(int format) {
    SetVideoFormat(format);
    return openCamera(kIndexOfEarlier, 640, 480);
}

void SweepTest::waitForEnds(int count) {
    for (int now = ends; now < count; now = ends) {
        ends.wait(now);
    }
}

void SweepTest::expectCleanEnd() {
    virtualcam::clearFaults(earlier_);
    ASSERT_EQ(open(), 0);
    waitForFrames(framesSeen() + 1);
    EXPECT_EQ(closeCamera(), 0);
    EXPECT_EQ(virtualcam::openHandles(), 0);
    EXPECT_EQ(virtualcam::liveMappings(), 0);
    EXPECT_EQ(descriptors(), descriptorsBefore_);
    EXPECT_EQ(state().cam_fd, kNoDescriptor);
}

std::string described(const std::string& request, int error, int at) {
    return request + " " + strerrorname_np(error) + " at " + std::to_string(at);
}

} // namespace doccam::test
