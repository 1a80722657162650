// Faults on demand.
#include "picture/jpeg.h"
#include "support/camera_fixture.h"
#include "support/scratch_folder.h"
#include "virtual_camera_client.h"
#include "virtual_camera_pictures.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <future>
#include <thread>

namespace {

using doccam::test::VideoClient;
using doccam::virtualcam::Fault;
using doccam::virtualcam::FaultKind;
using doccam::virtualcam::kMjpeg;
using doccam::virtualcam::kYuyv;
namespace virtualcam = doccam::virtualcam;

class VirtualCameraFaults : public doccam::test::BareCameraTest {
  protected:
    void setFault(FaultKind kind, int at = 1, int value = 0) {
        Fault fault;
        fault.kind = kind;
        fault.at = at;
        fault.value = value;
        virtualcam::addFault(camera_, fault);
    }

    void failCall(const std::string& request, int at, int error, bool onwards = false) {
        virtualcam::addFault(camera_, {FaultKind::kCall, request, at, error, 0, onwards});
    }

    // Waits for a frame on another thread, and returns once that thread is blocked.
    std::future<int> blockedDequeue(VideoClient& client) const {
        std::future<int> result = std::async(std::launch::async, [&client] {
            v4l2_buffer record = VideoClient::buffer();
            return client.request(VIDIOC_DQBUF, record);
        });
        while (!virtualcam::waitedFor(camera_)) {
            std::this_thread::yield();
        }
        return result;
    }

    // The delivered bytes decoded independently; empty when they are no picture.
    cv::Mat decodedLastFrame() const {
        const std::string path = folder_.file("frame.jpg");
        doccam::test::writeBytes(path, *virtualcam::lastFrame(camera_)->bytes);
        try {
            return virtualcam::loadPhoto(path);
        } catch (const std::runtime_error&) {
            return {};
        }
    }

    virtualcam::CameraId camera_ = bed_.add(fastCamera());
    doccam::test::ScratchFolder folder_;
};

TEST_F(VirtualCameraFaults, FailsOnlyTheNthCall) {
    failCall("VIDIOC_DQBUF", 2, EPROTO);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record;
    EXPECT_EQ(client.takeFrame(record), 0);
    EXPECT_EQ(client.takeFrame(record), EPROTO);
    EXPECT_EQ(client.takeFrame(record), 0);
}

TEST_F(VirtualCameraFaults, FailsEveryCallFromTheNthOn) {
    failCall("G_FMT", 2, EIO, true);
    VideoClient client("/dev/video0");
    v4l2_format format = VideoClient::format(0, 0, 0);
    EXPECT_EQ(client.request(VIDIOC_G_FMT, format), 0);
    EXPECT_EQ(client.request(VIDIOC_G_FMT, format), EIO);
    EXPECT_EQ(client.request(VIDIOC_G_FMT, format), EIO);
    virtualcam::clearFaults(camera_);
    EXPECT_EQ(client.request(VIDIOC_G_FMT, format), 0);
}

TEST_F(VirtualCameraFaults, FailsAnOpen) {
    failCall("open", 1, EACCES);
    EXPECT_EQ(open("/dev/video0", O_RDWR), -1);
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(virtualcam::openHandles(), 0);
    EXPECT_GE(VideoClient("/dev/video0").descriptor(), 0);
}

TEST_F(VirtualCameraFaults, FailsAMapping) {
    failCall("mmap", 2, ENOMEM);
    VideoClient client("/dev/video0");
    EXPECT_EQ(client.start(kMjpeg, 640, 480), ENOMEM);
    EXPECT_EQ(virtualcam::liveMappings(), 1);
}

TEST_F(VirtualCameraFaults, FailsAnUnmappingAndKeepsTheMapping) {
    failCall("munmap", 1, EINVAL);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480, 1), 0);
    void* address = const_cast<std::uint8_t*>(client.bytes(0));
    EXPECT_EQ(munmap(address, 640 * 480 * 2), -1);
    EXPECT_EQ(virtualcam::liveMappings(), 1);
}

TEST_F(VirtualCameraFaults, FailsACloseThoughTheDescriptorIsGone) {
    failCall("close", 1, EIO);
    const int descriptor = open("/dev/video0", O_RDWR);
    EXPECT_EQ(close(descriptor), -1);
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(fcntl(descriptor, F_GETFD), -1);
    EXPECT_EQ(virtualcam::openHandles(), 0);
}

TEST_F(VirtualCameraFaults, GrantsFewerBuffersThanRequested) {
    setFault(FaultKind::kGrant, 1, 3);
    VideoClient client("/dev/video0");
    v4l2_requestbuffers request = VideoClient::buffers(5);
    ASSERT_EQ(client.request(VIDIOC_REQBUFS, request), 0);
    EXPECT_EQ(request.count, 3U);
}

TEST_F(VirtualCameraFaults, GrantsMoreBuffersThanRequested) {
    setFault(FaultKind::kGrant, 1, 8);
    VideoClient client("/dev/video0");
    v4l2_requestbuffers request = VideoClient::buffers(5);
    ASSERT_EQ(client.request(VIDIOC_REQBUFS, request), 0);
    EXPECT_EQ(request.count, 8U);
    v4l2_buffer last = VideoClient::buffer(7);
    EXPECT_EQ(client.request(VIDIOC_QUERYBUF, last), 0);
}

TEST_F(VirtualCameraFaults, ReturnsAnImpossibleIndex) {
    setFault(FaultKind::kIndex, 2, 99);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record;
    ASSERT_EQ(client.takeFrame(record), 0);
    EXPECT_LT(record.index, 4U);
    EXPECT_EQ(client.takeFrame(record), EINVAL); // the buffer cannot be queued under that index
    EXPECT_EQ(record.index, 99U);
}

TEST_F(VirtualCameraFaults, MakesBuffersLargerThanThreeBytesPerPixel) {
    setFault(FaultKind::kBufferBytes, 1, 640 * 480 * 3 + 5000);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kYuyv, 640, 480), 0);
    v4l2_buffer record;
    ASSERT_EQ(client.takeFrame(record), 0);
    EXPECT_EQ(record.length, 640U * 480U * 3U + 5000U);
    EXPECT_EQ(record.bytesused, 640U * 480U * 2U);
    EXPECT_GT(client.bytes(0)[0], 0);
}

TEST_F(VirtualCameraFaults, SendsAPictureThatCannotBeDecodedOnce) {
    setFault(FaultKind::kCorrupt, 2);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record;
    ASSERT_EQ(client.takeFrame(record), 0);
    EXPECT_EQ(decodedLastFrame().size(), cv::Size(640, 480));
    ASSERT_EQ(client.takeFrame(record), 0);
    EXPECT_TRUE(decodedLastFrame().empty());
    ASSERT_EQ(client.takeFrame(record), 0);
    EXPECT_EQ(decodedLastFrame().size(), cv::Size(640, 480));
}

TEST_F(VirtualCameraFaults, SendsHalfAPictureAndNothingAfterIt) {
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480, 1), 0);
    v4l2_buffer whole;
    ASSERT_EQ(client.takeFrame(whole), 0);
    setFault(FaultKind::kTruncated);
    v4l2_buffer half = VideoClient::buffer();
    ASSERT_EQ(client.request(VIDIOC_DQBUF, half), 0);
    EXPECT_LT(half.bytesused, whole.bytesused * 3 / 4);
    EXPECT_GT(half.bytesused, whole.bytesused / 4);
    const std::uint8_t* end = client.bytes(0) + half.bytesused;
    EXPECT_TRUE(std::all_of(end, client.bytes(0) + half.length,
                            [](std::uint8_t byte) { return byte == 0; }));
}

TEST_F(VirtualCameraFaults, SendsAnEmptyFrame) {
    setFault(FaultKind::kEmpty);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record;
    ASSERT_EQ(client.takeFrame(record), 0);
    EXPECT_EQ(record.bytesused, 0U);
    EXPECT_EQ(client.bytes(record.index)[0], 0);
}

TEST_F(VirtualCameraFaults, SendsAPictureOfAnotherSize) {
    setFault(FaultKind::kWrongSize);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record;
    ASSERT_EQ(client.takeFrame(record), 0);
    EXPECT_EQ(decodedLastFrame().size(), cv::Size(320, 240));
}

TEST_F(VirtualCameraFaults, FallsSilentAtAFrameAndResumesTheSameStream) {
    setFault(FaultKind::kStall, 2);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record;
    ASSERT_EQ(client.takeFrame(record), 0);
    std::future<int> second = blockedDequeue(client);
    virtualcam::resume(camera_);
    EXPECT_EQ(second.get(), 0);
    EXPECT_EQ(virtualcam::lastFrame(camera_)->sequence, 1U);
}

TEST_F(VirtualCameraFaults, WakesAWaiterWhenTheStreamIsSwitchedOff) {
    virtualcam::stall(camera_);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    std::future<int> waiter = blockedDequeue(client);
    EXPECT_EQ(client.streamOff(), 0);
    EXPECT_EQ(waiter.get(), EINVAL);
}

TEST_F(VirtualCameraFaults, WakesAWaiterWithEinvalAtAnUnplugAndThenReturnsEnodev) {
    virtualcam::stall(camera_);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    std::future<int> waiter = blockedDequeue(client);
    bed_.unplug(camera_);
    EXPECT_EQ(waiter.get(), EINVAL);
    v4l2_buffer record;
    v4l2_capability capability{};
    EXPECT_EQ(client.takeFrame(record), ENODEV);
    EXPECT_EQ(client.request(VIDIOC_QUERYCAP, capability), ENODEV);
    EXPECT_EQ(client.streamOff(), ENODEV);
    EXPECT_EQ(close(dup(client.descriptor())), 0);
}

TEST_F(VirtualCameraFaults, IsUnpluggedInsteadOfSendingAFrame) {
    setFault(FaultKind::kUnplug, 3);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record;
    EXPECT_EQ(client.takeFrame(record), 0);
    EXPECT_EQ(client.takeFrame(record), 0);
    EXPECT_EQ(client.takeFrame(record), EINVAL);
    EXPECT_EQ(client.takeFrame(record), ENODEV);
    EXPECT_EQ(open("/dev/video0", O_RDWR), -1);
    EXPECT_EQ(errno, ENODEV);
}

TEST_F(VirtualCameraFaults, WorksAgainAfterAReplug) {
    bed_.unplug(camera_);
    EXPECT_EQ(open("/dev/video0", O_RDWR), -1);
    EXPECT_EQ(errno, ENOENT);
    bed_.plug(camera_);
    VideoClient client(bed_.path(camera_));
    EXPECT_EQ(client.start(kMjpeg, 640, 480), 0);
}

} // namespace
