#include "faults/sweep_fixture.h"

#include "api/library_state.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace doccam::test {
namespace {

std::atomic<int> ends{0};

void onFault(int fault, const char* /*message*/) {
    if (fault == DOCCAM_FAULT_STREAM_ENDED) {
        ends.fetch_add(1);
        ends.notify_all();
    }
}

// What the process's descriptors lead to. The mocked device tree's threads open and close sockets
// at any time; the library has none.
std::vector<std::string> descriptors() {
    std::vector<std::string> targets;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const auto target = std::filesystem::read_symlink(entry.path(), gone).string();
        if (!gone && !target.starts_with("socket:")) {
            targets.push_back(target);
        }
    }
    std::sort(targets.begin(), targets.end());
    return targets;
}

} // namespace

std::vector<int> requestErrors(std::initializer_list<int> own) {
    std::vector<int> errors = {EAGAIN, EBADF,  EBUSY,  EFAULT, EINVAL, ENODEV,
                               ENOMEM, ENOTTY, ENOSPC, EPERM,  EIO,    ENXIO};
    errors.insert(errors.end(), own);
    return errors;
}

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

void SweepTest::expectStruck(const std::string& request, int error) {
    const std::string name = request.starts_with("VIDIOC_") ? request.substr(7) : request;
    const auto calls = virtualcam::calls();
    EXPECT_TRUE(std::any_of(calls.begin(), calls.end(), [&](const virtualcam::Call& call) {
        return call.request == name && call.result == -1 && call.error == error;
    }));
}

void SweepTest::expectCleanEnd() {
    virtualcam::clearFaults(earlier_);
    if (state().bKeep) {
        closeCamera(); // an open over a running session would leave its pictures undecoded
    }
    watchFrames();
    ASSERT_EQ(open(), 0);
    waitForFrames(1);
    EXPECT_EQ(lastSeen().size(), cv::Size(640, 480));
    EXPECT_GT(cv::mean(lastSeen())[0], 20); // an undecoded frame is black
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
