// The state machine of a capture node by itself, with frames of a few bytes.
#include "device/capture_device.h"

#include <gmock/gmock.h>
#include <poll.h>

#include <array>
#include <chrono>
#include <thread>

namespace {

using namespace doccam::virtualcam;
using testing::ElementsAre;

class NumberedFrames : public FrameSource {
  public:
    FrameBytes frame(std::uint32_t, Size, std::uint32_t number) override {
        return std::make_shared<const std::vector<std::uint8_t>>(
            std::vector<std::uint8_t>{0xFF, 0xD8, static_cast<std::uint8_t>(number)});
    }
};

class CaptureDeviceTest : public testing::Test {
  protected:
    static CameraDescription description() {
        CameraDescription camera = documentCamera();
        camera.intervalMs = 0;
        return camera;
    }

    template <typename Argument>
    int request(std::uint32_t number, Argument& argument, ClientId client = 1) {
        return device_.request(client, number, &argument, true);
    }

    static v4l2_format format(std::uint32_t pixelFormat, std::uint32_t width,
                              std::uint32_t height) {
        v4l2_format record{};
        record.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        record.fmt.pix.pixelformat = pixelFormat;
        record.fmt.pix.width = width;
        record.fmt.pix.height = height;
        return record;
    }

    int requestBuffers(std::uint32_t count, ClientId client = 1) {
        v4l2_requestbuffers record{};
        record.count = count;
        record.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        record.memory = V4L2_MEMORY_MMAP;
        return request(VIDIOC_REQBUFS, record, client);
    }

    static v4l2_buffer buffer(std::uint32_t index) {
        v4l2_buffer record{};
        record.index = index;
        record.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        record.memory = V4L2_MEMORY_MMAP;
        return record;
    }

    int queue(std::uint32_t index) {
        v4l2_buffer record = buffer(index);
        return request(VIDIOC_QBUF, record);
    }

    int dequeue() {
        last_ = buffer(0);
        return request(VIDIOC_DQBUF, last_);
    }

    int switchStream(std::uint32_t number, ClientId client = 1) {
        int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        return request(number, type, client);
    }

    int setControlValue(std::uint32_t id, int value) {
        v4l2_control record{id, value};
        return request(VIDIOC_S_CTRL, record);
    }

    CaptureDevice device_{
        description(), {"Card: Card", "usb-1"}, std::make_shared<NumberedFrames>()};
    v4l2_buffer last_{};
};

TEST_F(CaptureDeviceTest, AdjustsASizeToTheNearestOfferedOne) {
    v4l2_format record = format(kMjpeg, 1300, 1000);
    ASSERT_EQ(request(VIDIOC_TRY_FMT, record), 0);
    EXPECT_EQ(record.fmt.pix.width, 1280U);
    EXPECT_EQ(record.fmt.pix.height, 960U);
    EXPECT_EQ(record.fmt.pix.field, static_cast<std::uint32_t>(V4L2_FIELD_NONE));
    EXPECT_EQ(record.fmt.pix.sizeimage, 1280U * 960U * 2U);
}

TEST_F(CaptureDeviceTest, TurnsAnUnknownFormatIntoTheFirstOne) {
    v4l2_format record = format(V4L2_PIX_FMT_NV12, 640, 480);
    ASSERT_EQ(request(VIDIOC_S_FMT, record), 0);
    EXPECT_EQ(record.fmt.pix.pixelformat, kMjpeg);
}

TEST_F(CaptureDeviceTest, RefusesAFormatOfAnotherBufferType) {
    v4l2_format record = format(kMjpeg, 640, 480);
    record.type = V4L2_BUF_TYPE_VIDEO_OUTPUT;
    EXPECT_EQ(request(VIDIOC_TRY_FMT, record), EINVAL);
}

TEST_F(CaptureDeviceTest, RemembersTheFormatThatWasSet) {
    v4l2_format wanted = format(kYuyv, 2048, 1536);
    ASSERT_EQ(request(VIDIOC_S_FMT, wanted), 0);
    v4l2_format now = format(0, 0, 0);
    ASSERT_EQ(request(VIDIOC_G_FMT, now), 0);
    EXPECT_EQ(now.fmt.pix.pixelformat, kYuyv);
    EXPECT_EQ(now.fmt.pix.width, 2048U);
    EXPECT_EQ(now.fmt.pix.bytesperline, 4096U);
}

TEST_F(CaptureDeviceTest, RefusesANewFormatWhileBuffersExist) {
    ASSERT_EQ(requestBuffers(2), 0);
    v4l2_format record = format(kYuyv, 640, 480);
    EXPECT_EQ(request(VIDIOC_S_FMT, record), EBUSY);
    ASSERT_EQ(requestBuffers(0), 0);
    EXPECT_EQ(request(VIDIOC_S_FMT, record), 0);
}

TEST_F(CaptureDeviceTest, KeepsASecondClientFromTheStreamOfTheFirst) {
    ASSERT_EQ(requestBuffers(2, 1), 0);
    v4l2_format record = format(kYuyv, 640, 480);
    EXPECT_EQ(request(VIDIOC_S_FMT, record, 2), EBUSY);
    EXPECT_EQ(requestBuffers(2, 2), EBUSY);
    EXPECT_EQ(switchStream(VIDIOC_STREAMOFF, 2), EBUSY);
    EXPECT_EQ(request(VIDIOC_G_FMT, record, 2), 0);
    device_.detach(1);
    EXPECT_EQ(requestBuffers(2, 2), 0);
}

TEST_F(CaptureDeviceTest, RefusesABufferThatIsQueuedAlready) {
    ASSERT_EQ(requestBuffers(2), 0);
    EXPECT_EQ(queue(0), 0);
    EXPECT_EQ(queue(0), EINVAL);
    EXPECT_EQ(queue(2), EINVAL);
}

TEST_F(CaptureDeviceTest, HasNoFrameBeforeTheStreamIsOn) {
    ASSERT_EQ(requestBuffers(2), 0);
    ASSERT_EQ(queue(0), 0);
    EXPECT_EQ(dequeue(), EINVAL);
    EXPECT_EQ(device_.pollErrors(), POLLERR);
}

TEST_F(CaptureDeviceTest, CannotStreamWithoutBuffers) {
    v4l2_format record = format(kYuyv, 640, 480);
    ASSERT_EQ(request(VIDIOC_S_FMT, record), 0);
    EXPECT_EQ(switchStream(VIDIOC_STREAMON), EINVAL);
}

TEST_F(CaptureDeviceTest, FillsBuffersInTheOrderOfQueueing) {
    ASSERT_EQ(requestBuffers(3), 0);
    for (const std::uint32_t index : {2U, 0U, 1U}) {
        ASSERT_EQ(queue(index), 0);
    }
    ASSERT_EQ(switchStream(VIDIOC_STREAMON), 0);
    std::vector<std::uint32_t> order;
    std::vector<std::uint32_t> sequence;
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(dequeue(), 0);
        order.push_back(last_.index);
        sequence.push_back(last_.sequence);
    }
    EXPECT_THAT(order, ElementsAre(2, 0, 1));
    EXPECT_THAT(sequence, ElementsAre(0, 1, 2));
    EXPECT_EQ(dequeue(), EAGAIN);
}

TEST_F(CaptureDeviceTest, CountsTheFramesThatItSentAndThoseThatWereMissed) {
    device_.setInterval(1);
    ASSERT_EQ(requestBuffers(1), 0);
    ASSERT_EQ(queue(0), 0);
    ASSERT_EQ(switchStream(VIDIOC_STREAMON), 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ASSERT_EQ(dequeue(), 0);
    const FrameCount count = device_.frameCount();
    EXPECT_GT(count.missed, 0U);
    EXPECT_EQ(count.missed, last_.sequence);
    EXPECT_EQ(count.sent, last_.sequence + 1);
    EXPECT_EQ(device_.frameCount().longestWait, 0);
}

TEST_F(CaptureDeviceTest, StampsFramesWithGrowingTimesAndTheirLength) {
    ASSERT_EQ(requestBuffers(2), 0);
    ASSERT_EQ(queue(0), 0);
    ASSERT_EQ(queue(1), 0);
    ASSERT_EQ(switchStream(VIDIOC_STREAMON), 0);
    ASSERT_EQ(dequeue(), 0);
    const timeval first = last_.timestamp;
    EXPECT_EQ(last_.bytesused, 3U);
    EXPECT_NE(last_.flags & V4L2_BUF_FLAG_TIMESTAMP_MONOTONIC, 0U);
    ASSERT_EQ(dequeue(), 0);
    EXPECT_FALSE(timercmp(&last_.timestamp, &first, <));
}

TEST_F(CaptureDeviceTest, GivesAllBuffersBackWhenTheStreamIsSwitchedOff) {
    ASSERT_EQ(requestBuffers(2), 0);
    ASSERT_EQ(queue(0), 0);
    ASSERT_EQ(switchStream(VIDIOC_STREAMON), 0);
    EXPECT_EQ(requestBuffers(2), EBUSY);
    ASSERT_EQ(switchStream(VIDIOC_STREAMOFF), 0);
    EXPECT_EQ(queue(0), 0);
}

TEST_F(CaptureDeviceTest, ReportsWhenAFrameCanBeFetched) {
    std::optional<CaptureDevice::Time> ready;
    device_.attach(1, [&](auto time) { ready = time; });
    EXPECT_TRUE(ready); // an error can be fetched at once
    ASSERT_EQ(requestBuffers(1), 0);
    ASSERT_EQ(switchStream(VIDIOC_STREAMON), 0);
    EXPECT_FALSE(ready);
    ASSERT_EQ(queue(0), 0);
    EXPECT_TRUE(ready);
    device_.stall();
    EXPECT_FALSE(ready);
    device_.detach(1);
}

TEST_F(CaptureDeviceTest, AnswersNothingAfterAnUnplug) {
    device_.unplug();
    v4l2_capability capability{};
    EXPECT_EQ(request(VIDIOC_QUERYCAP, capability), ENODEV);
    EXPECT_EQ(setControlValue(V4L2_CID_BRIGHTNESS, 1), ENODEV);
    EXPECT_EQ(device_.pollErrors(), POLLERR | POLLHUP);
}

TEST_F(CaptureDeviceTest, ReadsAndWritesControls) {
    EXPECT_EQ(setControlValue(V4L2_CID_BRIGHTNESS, 17), 0);
    v4l2_control record{V4L2_CID_BRIGHTNESS, 0};
    ASSERT_EQ(request(VIDIOC_G_CTRL, record), 0);
    EXPECT_EQ(record.value, 17);
    EXPECT_EQ(device_.control(V4L2_CID_BRIGHTNESS), 17);
}

TEST_F(CaptureDeviceTest, ClampsAControlAsTheDriverDoes) {
    EXPECT_EQ(setControlValue(V4L2_CID_BRIGHTNESS, 1000), 0);
    EXPECT_EQ(device_.control(V4L2_CID_BRIGHTNESS), 64);
}

TEST_F(CaptureDeviceTest, RefusesUnknownControls) {
    v4l2_queryctrl query{};
    query.id = V4L2_CID_RED_BALANCE;
    EXPECT_EQ(request(VIDIOC_QUERYCTRL, query), EINVAL);
    EXPECT_EQ(setControlValue(V4L2_CID_RED_BALANCE, 1), EINVAL);
}

TEST_F(CaptureDeviceTest, ReportsTheRangesOfItsControls) {
    v4l2_queryctrl query{};
    query.id = V4L2_CID_GAMMA;
    ASSERT_EQ(request(VIDIOC_QUERYCTRL, query), 0);
    EXPECT_EQ(query.minimum, 72);
    EXPECT_EQ(query.maximum, 500);
    EXPECT_EQ(query.default_value, 100);
}

TEST_F(CaptureDeviceTest, AdjustsTheFrameRateToAnOfferedOne) {
    v4l2_streamparm parameters{};
    parameters.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    parameters.parm.capture.timeperframe = {1, 12};
    ASSERT_EQ(request(VIDIOC_S_PARM, parameters), 0);
    ASSERT_EQ(request(VIDIOC_G_PARM, parameters), 0);
    EXPECT_EQ(parameters.parm.capture.timeperframe.numerator, 1U);
    EXPECT_EQ(parameters.parm.capture.timeperframe.denominator, 15U);
}

TEST_F(CaptureDeviceTest, RefusesForeignRequests) {
    v4l2_std_id standard = 0;
    EXPECT_EQ(request(VIDIOC_G_STD, standard), ENOTTY);
}

} // namespace
