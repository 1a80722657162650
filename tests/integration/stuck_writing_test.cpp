// Stills whose writing never ends, as to a pipe that nobody reads.
#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace doccam::test {
namespace {

std::atomic<bool> slow{false};
std::atomic<int> slowEntered{0};
std::atomic<int> slowLeft{0};

// A callback that takes its time while slow is set.
void takesItsTime(unsigned char*, int, int) {
    if (slow) {
        slowEntered.fetch_add(1);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        slowLeft.fetch_add(1);
    }
}

class StuckWriting : public SessionTest {
  protected:
    StuckWriting() {
        EXPECT_EQ(mkfifo(pipe_.c_str(), 0600), 0);
        reader_ = open(pipe_.c_str(), O_RDONLY | O_NONBLOCK);
    }

    ~StuckWriting() override { close(reader_); }

    // captureImage() would remove the pipe first.
    void requestStill() const {
        state().session.imgSavePath.store(pipe_);
        state().session.isShootPhoto = true;
    }

    // The file is larger than the pipe's buffer.
    void waitUntilPipeIsFull() const {
        const int capacity = fcntl(reader_, F_GETPIPE_SZ);
        for (int held = 0; held < capacity; ioctl(reader_, FIONREAD, &held)) {
            std::this_thread::yield();
        }
    }

    std::vector<unsigned char> readPipe() const {
        fcntl(reader_, F_SETFL, 0);
        std::vector<unsigned char> bytes;
        std::array<unsigned char, 65536> chunk{};
        for (ssize_t count = 0; (count = read(reader_, chunk.data(), chunk.size())) > 0;) {
            bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + count);
        }
        return bytes;
    }

    const ScratchFolder folder_;
    const std::string pipe_ = folder_.file("page.png");
    int reader_ = -1;
};

TEST_F(StuckWriting, DoesNotBlockTheCloseForEverAndEndsWhenItCan) {
    watchFrames();
    openSmall(kYuyvFormat);
    waitForFrames(1);
    requestStill();
    waitUntilPipeIsFull();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(closeCamera(), 0);
    // Ten seconds are promised; the rest is for a busy machine.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    EXPECT_EQ(virtualcam::openHandles(), 0);
    EXPECT_EQ(virtualcam::liveMappings(), 0);

    // The next session serves its own requests, not the one that is still being written.
    const int before = framesSeen();
    openSmall(kMjpegFormat);
    EXPECT_TRUE(waitForFrames(before + 3));
    const std::string other = folder_.file("other.png");
    takeStill(other);
    EXPECT_EQ(cv::imread(other).size(), cv::Size(640, 480));

    EXPECT_EQ(cv::imdecode(readPipe(), cv::IMREAD_COLOR).size(), cv::Size(640, 480));
    EXPECT_TRUE(waitForFrames(framesSeen() + 3));
}

// The still alone takes longer than a callback may hold up the close.
TEST_F(StuckWriting, LeavesTheCallbackThatFollowsItsTime) {
    SetDataCallback(takesItsTime);
    openSmall(kYuyvFormat);
    requestStill();
    waitUntilPipeIsFull();
    slow = true;
    virtualcam::clearCalls();
    std::thread closing([] { closeCamera(); });
    waitForStreamOff();
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    EXPECT_FALSE(readPipe().empty());
    closing.join();
    slow = false;
    EXPECT_EQ(slowEntered, 1);
    EXPECT_EQ(slowLeft, 1);
}

} // namespace
} // namespace doccam::test
