#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstring>
#include <thread>

namespace doccam::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using virtualcam::FaultKind;

class FrameLoop : public SessionTest {
  protected:
    // Lets the loop see exactly one frame, and waits until the callback has seen it.
    cv::Mat onlyFrame(int format) {
        addFrameFault(FaultKind::kStall, 2);
        watchFrames();
        openSmall(format);
        waitForFrames(1);
        return lastSeen();
    }

    // Waits until the loop has ended by itself; returns what was printed since printed began.
    static std::string untilEnd(PrintedText& printed) {
        std::string text;
        do {
            text = printed.soFar();
        } while (text.find("cam get image ret = ") == std::string::npos &&
                 text.find("don't suport format") == std::string::npos);
        return ofTheLoop(text);
    }

    // Removes openCamera's last line, which may follow the loop's first.
    static std::string ofTheLoop(std::string text) {
        const std::string opened = "ovisto->openCamera OK\n";
        if (const auto at = text.find(opened); at != std::string::npos) {
            text.erase(at, opened.size());
        }
        return text;
    }
};

TEST_F(FrameLoop, DeliversMjpegFramesRedFirst) {
    const cv::Mat frame = onlyFrame(kMjpegFormat);
    const auto sent = virtualcam::lastFrame(earlier_);
    ASSERT_TRUE(sent);
    cv::Mat decoded = cv::imdecode(*sent->bytes, cv::IMREAD_COLOR);
    cv::cvtColor(decoded, decoded, cv::COLOR_BGR2RGB);
    ASSERT_EQ(frame.size(), decoded.size());
    // Two decoders differ where they interpolate chroma.
    EXPECT_GT(cv::PSNR(frame, decoded), 35);
}

TEST_F(FrameLoop, DeliversYuyvFramesToTheByte) {
    const cv::Mat frame = onlyFrame(kYuyvFormat);
    const auto sent = virtualcam::lastFrame(earlier_);
    ASSERT_TRUE(sent);
    std::vector<unsigned char> source(*sent->bytes);
    source.resize(640 * 480 * 2 + 4);
    std::vector<unsigned char> expected(640 * 480 * 3 + 6);
    yuyv_to_rgb888(source.data(), expected.data(), 640, 480);
    EXPECT_EQ(std::memcmp(frame.data, expected.data(), 640 * 480 * 3), 0);
}

TEST_F(FrameLoop, TurnsFramesByQuarters) {
    const cv::Mat upright = onlyFrame(kYuyvFormat);
    const cv::RotateFlags turns[] = {cv::ROTATE_90_CLOCKWISE, cv::ROTATE_180,
                                     cv::ROTATE_90_COUNTERCLOCKWISE};
    for (int angle = 1; angle <= 3; ++angle) {
        closeCamera();
        virtualcam::clearFaults(earlier_);
        virtualcam::resume(earlier_);
        SetRotate(angle);
        addFrameFault(FaultKind::kStall, 2);
        const int before = framesSeen();
        openSmall(kYuyvFormat);
        waitForFrames(before + 1);
        const auto sent = virtualcam::lastFrame(earlier_);
        std::vector<unsigned char> source(*sent->bytes);
        source.resize(640 * 480 * 2 + 4);
        cv::Mat plain(481, 640, CV_8UC3);
        yuyv_to_rgb888(source.data(), plain.data, 640, 480);
        cv::Mat expected;
        cv::rotate(plain.rowRange(0, 480), expected, turns[angle - 1]);
        const cv::Mat seen = lastSeen();
        ASSERT_EQ(seen.size(), expected.size()) << angle;
        EXPECT_EQ(cv::norm(seen, expected, cv::NORM_INF), 0) << angle;
    }
    EXPECT_EQ(upright.size(), cv::Size(640, 480));
}

TEST_F(FrameLoop, DeliversNothingForAnInvalidRotation) {
    SetRotate(7);
    watchFrames();
    openSmall(kYuyvFormat);
    const test::ScratchFolder folder;
    virtualcam::setSleepScale(1);
    takeStill(folder.file("a.jpg"));
    EXPECT_FALSE(std::filesystem::exists(folder.file("a.jpg")));
    EXPECT_EQ(framesSeen(), 0);
}

TEST_F(FrameLoop, DropsTheTwoFramesAfterATurn) {
    addFrameFault(FaultKind::kStall, 4);
    watchFrames();
    state().settings.RotateFlag = 2;
    PrintedText printed;
    openSmall(kYuyvFormat);
    waitForFrames(1);
    EXPECT_THAT(ofTheLoop(printed.take()), EndsWith("RotateFlag--\nRotateFlag--\n"));
    EXPECT_EQ(state().settings.RotateFlag, 0);
    while (!virtualcam::waitedFor(earlier_)) {
        std::this_thread::yield();
    }
    EXPECT_EQ(framesSeen(), 1);
}

TEST_F(FrameLoop, PausesThreeMillisecondsAfterEachDeliveredFrame) {
    addFrameFault(FaultKind::kStall, 4);
    watchFrames();
    openSmall(kYuyvFormat);
    waitForFrames(3);
    while (!virtualcam::waitedFor(earlier_)) {
        std::this_thread::yield();
    }
    const pid_t self = gettid();
    int pauses = 0;
    for (const virtualcam::Sleep& sleep : virtualcam::sleeps()) {
        if (sleep.thread != self) {
            EXPECT_EQ(sleep.microseconds, 3000);
            ++pauses;
        }
    }
    EXPECT_EQ(pauses, 3);
}

TEST_F(FrameLoop, EndsWhenTheCameraIsUnplugged) {
    watchFrames();
    PrintedText printed;
    addFrameFault(FaultKind::kUnplug, 3);
    openSmall(kMjpegFormat);
    const std::string text = untilEnd(printed);
    EXPECT_THAT(text, HasSubstr("ioctl(VIDIOC_DQBUF) failed "));
    EXPECT_THAT(text, EndsWith(")grabImage error!!!!!!!!!!\ncam get image ret = -1\n"));
    EXPECT_TRUE(state().session.bKeep);
    EXPECT_EQ(framesSeen(), 2);
}

TEST_F(FrameLoop, EndsWhenABufferCannotBeGivenBack) {
    PrintedText printed;
    addCallFault("VIDIOC_QBUF", EIO, 6);
    openSmall(kMjpegFormat);
    const std::string reason = std::to_string(EIO) + "(" + strerror(EIO) + ")";
    EXPECT_THAT(untilEnd(printed), EndsWith("ioctl(VIDIOC_QBUF) failed " + reason +
                                            "grabImage error!!!!!!!!!!\ncam get image ret = -1\n"));
}

TEST_F(FrameLoop, EndsWhenTheDriverReturnsABufferThatDoesNotExist) {
    PrintedText printed;
    addFrameFault(FaultKind::kIndex, 1, 5);
    openSmall(kMjpegFormat);
    EXPECT_THAT(untilEnd(printed), EndsWith("invalid buffer index: 5grabImage error!!!!!!!!!!\n"
                                            "cam get image ret = -100\n"));
}

TEST_F(FrameLoop, EndsOnAFormatItDoesNotKnow) {
    bed_.remove(earlier_);
    bed_.remove(later_);
    virtualcam::CameraDescription camera = fastCamera("1778", "0210");
    camera.formats = {{virtualcam::fourcc("GREY"), {{640, 480}}, {}, {30}}};
    bed_.add(camera);
    // A size known from an earlier camera.
    state().discovery.yuvWidthList = {640};
    state().discovery.yuvHeightList = {480};
    PrintedText printed;
    ASSERT_EQ(openCamera(0, 640, 480), 0);
    EXPECT_THAT(untilEnd(printed), EndsWith("don't suport format\n"));
}

class DamagedFrame : public SessionTest, public testing::WithParamInterface<FaultKind> {};

TEST_P(DamagedFrame, DoesNotEndTheStream) {
    PrintedText printed;
    addFrameFault(GetParam(), 2);
    addFrameFault(FaultKind::kStall, 4);
    watchFrames();
    openSmall(kMjpegFormat);
    waitForFrames(3);
    while (!virtualcam::waitedFor(earlier_)) {
        std::this_thread::yield();
    }
    const std::string text = printed.take();
    EXPECT_THAT(text, testing::Not(HasSubstr("grabImage")));
    const bool undecodable = GetParam() == FaultKind::kCorrupt || GetParam() == FaultKind::kEmpty;
    EXPECT_EQ(text.find("decode error.\n") != std::string::npos, undecodable);
    EXPECT_EQ(lastSeen().size(), cv::Size(640, 480));
}

INSTANTIATE_TEST_SUITE_P(FrameLoop, DamagedFrame,
                         testing::Values(FaultKind::kCorrupt, FaultKind::kTruncated,
                                         FaultKind::kWrongSize, FaultKind::kEmpty));

// The driver's buffers are longer than any frame.
TEST_F(FrameLoop, BuffersLargerThanAFrameAreCopiedWithinBounds) {
    constexpr std::size_t kLonger = 4096;
    constexpr unsigned char kUntouched = 0xA5;
    addFrameFault(FaultKind::kBufferBytes, 1, 640 * 480 * 3 + kLonger);
    addFrameFault(FaultKind::kIndex, 2, 9);
    PrintedText printed;
    watchFrames();
    openSmall(kMjpegFormat);
    untilEnd(printed);
    EXPECT_EQ(lastSeen().size(), cv::Size(640, 480));
    const auto bytes = static_cast<std::size_t>(state().session.nSize);
    std::vector<unsigned char> buffer(bytes + kLonger, kUntouched);
    int length = 0;
    EXPECT_EQ(grabImage(buffer.data(), &length), 0);
    EXPECT_EQ(length, state().session.nSize);
    EXPECT_TRUE(std::all_of(buffer.begin() + state().session.nSize, buffer.end(),
                            [](unsigned char byte) { return byte == kUntouched; }));
}

TEST_F(FrameLoop, GrabImageTakesOneFrameFromTheOpenCamera) {
    // The loop has ended on a fault; the descriptor is still valid.
    PrintedText printed;
    addFrameFault(FaultKind::kIndex, 1, 9);
    openSmall(kYuyvFormat);
    untilEnd(printed);
    std::vector<unsigned char> buffer(static_cast<std::size_t>(state().session.nSize));
    int length = 0;
    EXPECT_EQ(grabImage(buffer.data(), &length), 0);
    EXPECT_EQ(length, 640 * 480 * 2);
    const auto sent = virtualcam::lastFrame(earlier_);
    EXPECT_TRUE(std::equal(sent->bytes->begin(), sent->bytes->end(), buffer.begin()));
}

TEST_F(FrameLoop, GrabImageFailsWithoutACamera) {
    int length = 7;
    unsigned char none = 0;
    PrintedText printed;
    EXPECT_EQ(grabImage(&none, &length), -1);
    EXPECT_THAT(printed.take(), testing::StartsWith("ioctl(VIDIOC_DQBUF) failed "));
}

} // namespace
} // namespace doccam::test
