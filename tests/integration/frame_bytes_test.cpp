// A frame as the camera sent it, in the frame callback.
#include "integration/session_fixture.h"

#include <doccam/doccam.hpp>
#include <doccam/frame.h>

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

namespace doccam::test {
namespace {

struct Handed {
    std::vector<unsigned char> bytes;
    cv::Mat pixels; // red first
};

std::mutex mutex;
std::vector<Handed> handed;
std::atomic<int> count{0};
std::atomic<bool> seenByAnotherThread{false};

void onFrame(unsigned char* pixels, int width, int height) {
    std::size_t length = 0;
    const unsigned char* const bytes = doccam_frame_bytes(&length);
    std::thread([] { seenByAnotherThread = doccam_frame_bytes(nullptr) != nullptr; }).join();
    {
        const std::lock_guard lock(mutex);
        handed.push_back(
            {bytes != nullptr ? std::vector(bytes, bytes + length) : std::vector<unsigned char>(),
             cv::Mat(height, width, CV_8UC3, pixels).clone()});
    }
    ++count;
    count.notify_all();
}

class FrameBytes : public SessionTest {
  protected:
    FrameBytes() {
        handed.clear();
        count = 0;
        SetDataCallback(onFrame);
    }

    // What the callback got in the first frames of a session.
    static std::vector<Handed> ofFrames(int format, int frames) {
        openSmall(format);
        for (int now = count; now < frames; now = count) {
            count.wait(now);
        }
        closeCamera();
        return handed;
    }
};

TEST_F(FrameBytes, AreTheJpegOfTheHandedPixels) {
    for (const Handed& frame : ofFrames(kMjpegFormat, 5)) {
        cv::Mat decoded = cv::imdecode(frame.bytes, cv::IMREAD_COLOR);
        ASSERT_EQ(decoded.size(), frame.pixels.size());
        cv::cvtColor(decoded, decoded, cv::COLOR_BGR2RGB);
        EXPECT_GT(cv::PSNR(frame.pixels, decoded), 35);
        // Not what the buffer has after them.
        EXPECT_EQ(frame.bytes[frame.bytes.size() - 2], 0xFF);
        EXPECT_EQ(frame.bytes.back(), 0xD9);
    }
}

TEST_F(FrameBytes, AreNotTurned) {
    SetRotate(1);
    for (const Handed& frame : ofFrames(kMjpegFormat, 4)) {
        EXPECT_EQ(frame.pixels.size(), cv::Size(480, 640));
        EXPECT_EQ(cv::imdecode(frame.bytes, cv::IMREAD_COLOR).size(), cv::Size(640, 480));
    }
}

TEST_F(FrameBytes, AreNoneForYuyv) {
    for (const Handed& frame : ofFrames(kYuyvFormat, 2)) {
        EXPECT_TRUE(frame.bytes.empty());
    }
}

TEST_F(FrameBytes, AreNoneForAFrameThatTheDriverLeftEmpty) {
    addFrameFault(virtualcam::FaultKind::kEmpty, 2, 0);
    const auto frames = ofFrames(kMjpegFormat, 3);
    EXPECT_FALSE(frames[0].bytes.empty());
    EXPECT_TRUE(frames[1].bytes.empty());
    EXPECT_FALSE(frames[2].bytes.empty());
}

TEST_F(FrameBytes, AreNoneOutsideOfTheCallback) {
    std::size_t length = 7;
    EXPECT_EQ(doccam_frame_bytes(&length), nullptr);
    EXPECT_EQ(length, 0U);
    ofFrames(kMjpegFormat, 2);
    EXPECT_FALSE(seenByAnotherThread);
    EXPECT_EQ(doccam_frame_bytes(nullptr), nullptr);
}

} // namespace
} // namespace doccam::test
