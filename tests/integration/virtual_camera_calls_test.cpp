// A program's device calls, as the preload library answers them.
#include "support/camera_fixture.h"
#include "virtual_camera_client.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <sys/select.h>

#include <algorithm>
#include <string_view>

namespace {

using doccam::test::VideoClient;
using doccam::virtualcam::kMjpeg;
using doccam::virtualcam::kYuyv;
using testing::ElementsAre;
namespace virtualcam = doccam::virtualcam;

class VirtualCameraCalls : public doccam::test::BareCameraTest {
  protected:
    static bool readable(int descriptor) {
        fd_set set;
        FD_ZERO(&set);
        FD_SET(descriptor, &set);
        timeval now{};
        return select(descriptor + 1, &set, nullptr, nullptr, &now) == 1;
    }

    static short polled(int descriptor) {
        pollfd entry{descriptor, POLLIN, 0};
        poll(&entry, 1, 0);
        return entry.revents;
    }

    virtualcam::CameraId camera_ = bed_.add(fastCamera());
};

TEST_F(VirtualCameraCalls, PutsTheDeliveredBytesIntoTheMapping) {
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record = VideoClient::buffer();
    ASSERT_EQ(client.request(VIDIOC_DQBUF, record), 0);
    const auto frame = virtualcam::lastFrame(camera_);
    ASSERT_TRUE(frame);
    ASSERT_EQ(frame->bytes->size(), record.bytesused);
    EXPECT_TRUE(std::equal(frame->bytes->begin(), frame->bytes->end(), client.bytes(record.index)));
}

TEST_F(VirtualCameraCalls, LeavesBytesOfAnOlderPicturePastAJpeg) {
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record = VideoClient::buffer();
    ASSERT_EQ(client.request(VIDIOC_DQBUF, record), 0);
    ASSERT_GT(record.length, record.bytesused + 1000);
    const std::uint8_t* end = client.bytes(record.index) + record.bytesused;
    EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(end) - 2, 2), "\xFF\xD9");
    EXPECT_GT(std::count_if(end, end + 1000, [](std::uint8_t byte) { return byte != 0; }), 900);
}

TEST_F(VirtualCameraCalls, FillsAYuyvBufferToItsEnd) {
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kYuyv, 1280, 960), 0);
    v4l2_buffer record;
    ASSERT_EQ(client.takeFrame(record), 0);
    EXPECT_EQ(record.bytesused, 1280U * 960U * 2U);
    EXPECT_EQ(record.length, record.bytesused);
}

TEST_F(VirtualCameraCalls, StreamsTheLargestSizeInBothFormats) {
    for (const std::uint32_t format : {kMjpeg, kYuyv}) {
        VideoClient client("/dev/video0");
        ASSERT_EQ(client.start(format, 3264, 2448, 2), 0);
        v4l2_buffer record;
        EXPECT_EQ(client.takeFrame(record), 0);
        EXPECT_EQ(record.length, 15980544U);
    }
}

TEST_F(VirtualCameraCalls, TreatsTwoOpensAsTwoHandles) {
    VideoClient first("/dev/video0");
    VideoClient second("/dev/video0");
    EXPECT_NE(first.descriptor(), second.descriptor());
    ASSERT_EQ(first.start(kMjpeg, 640, 480), 0);
    EXPECT_EQ(second.setFormat(kMjpeg, 1280, 960), EBUSY);
    EXPECT_EQ(virtualcam::openHandles(), 2);
}

TEST_F(VirtualCameraCalls, ReleasesTheStreamWhenItsHandleIsClosed) {
    { EXPECT_EQ(VideoClient("/dev/video0").start(kMjpeg, 640, 480), 0); }
    VideoClient second("/dev/video0");
    EXPECT_EQ(second.setFormat(kMjpeg, 1280, 960), 0);
}

TEST_F(VirtualCameraCalls, KeepsTheStreamOfAClosedDescriptorWhileABufferIsMapped) {
    VideoClient first("/dev/video0");
    ASSERT_EQ(first.start(kMjpeg, 640, 480), 0);
    close(first.descriptor());
    VideoClient second("/dev/video0");
    EXPECT_EQ(second.setFormat(kMjpeg, 1280, 960), EBUSY);
}

TEST_F(VirtualCameraCalls, CountsHandlesAndMappings) {
    {
        VideoClient client("/dev/video0");
        ASSERT_EQ(client.start(kMjpeg, 640, 480, 3), 0);
        EXPECT_EQ(virtualcam::openHandles(), 1);
        EXPECT_EQ(virtualcam::liveMappings(), 3);
    }
    EXPECT_EQ(virtualcam::openHandles(), 0);
    EXPECT_EQ(virtualcam::liveMappings(), 0);
}

TEST_F(VirtualCameraCalls, LetsADuplicateUseTheHandleAfterTheOriginalIsClosed) {
    const int original = open("/dev/video0", O_RDWR);
    const int copy = dup(original);
    close(original);
    v4l2_capability capability{};
    EXPECT_EQ(doccam::test::errorOf(copy, VIDIOC_QUERYCAP, &capability), 0);
    EXPECT_EQ(virtualcam::openHandles(), 1);
    close(copy);
    EXPECT_EQ(doccam::test::errorOf(copy, VIDIOC_QUERYCAP, &capability), EBADF);
}

TEST_F(VirtualCameraCalls, TakesTheLowestFreeDescriptor) {
    const int lowest = dup(STDIN_FILENO);
    close(lowest);
    const VideoClient client("/dev/video0");
    EXPECT_EQ(client.descriptor(), lowest);
}

TEST_F(VirtualCameraCalls, LeavesOtherFilesAlone) {
    const int descriptor = open("/dev/null", O_RDWR);
    ASSERT_GE(descriptor, 0);
    v4l2_capability capability{};
    EXPECT_EQ(doccam::test::errorOf(descriptor, VIDIOC_QUERYCAP, &capability), ENOTTY);
    close(descriptor);
    EXPECT_EQ(virtualcam::callCount("VIDIOC_QUERYCAP"), 0);
}

TEST_F(VirtualCameraCalls, KnowsNoNodeButItsOwn) {
    EXPECT_EQ(open("/dev/video7", O_RDWR), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(VirtualCameraCalls, AnswersANonBlockingHandleAtOnce) {
    virtualcam::stall(camera_);
    VideoClient client("/dev/video0", O_RDWR | O_NONBLOCK);
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record;
    EXPECT_EQ(client.takeFrame(record), EAGAIN);
    virtualcam::resume(camera_);
    EXPECT_EQ(client.takeFrame(record), 0);
}

TEST_F(VirtualCameraCalls, ShowsSelectAFrameOnlyWhenThereIsOne) {
    VideoClient client("/dev/video0");
    virtualcam::stall(camera_);
    ASSERT_EQ(client.start(kMjpeg, 640, 480, 1), 0);
    EXPECT_FALSE(readable(client.descriptor()));
    virtualcam::resume(camera_);
    EXPECT_TRUE(readable(client.descriptor()));
    v4l2_buffer record = VideoClient::buffer();
    ASSERT_EQ(client.request(VIDIOC_DQBUF, record), 0);
    EXPECT_FALSE(readable(client.descriptor()));
}

TEST_F(VirtualCameraCalls, IsNotReadableForAWithheldFrame) {
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    EXPECT_TRUE(readable(client.descriptor()));
    virtualcam::Fault stall;
    stall.kind = virtualcam::FaultKind::kStall;
    virtualcam::addFault(camera_, stall);
    EXPECT_FALSE(readable(client.descriptor()));
    virtualcam::resume(camera_);
    EXPECT_TRUE(readable(client.descriptor()));
    v4l2_buffer record = VideoClient::buffer();
    EXPECT_EQ(client.request(VIDIOC_DQBUF, record), 0);
}

TEST_F(VirtualCameraCalls, ShowsPollAnErrorWhileNothingStreams) {
    VideoClient client("/dev/video0");
    EXPECT_EQ(polled(client.descriptor()), POLLERR);
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    EXPECT_EQ(polled(client.descriptor()), POLLIN);
    virtualcam::unplug(camera_);
    EXPECT_EQ(polled(client.descriptor()), POLLERR | POLLHUP);
}

TEST_F(VirtualCameraCalls, RefusesAMappingThatFitsNoBuffer) {
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480, 2), 0);
    v4l2_buffer record = VideoClient::buffer(1);
    ASSERT_EQ(client.request(VIDIOC_QUERYBUF, record), 0);
    record.m.offset += 4096;
    EXPECT_EQ(client.map(record), EINVAL);
    record.m.offset -= 4096;
    record.length += 8192;
    EXPECT_EQ(client.map(record), EINVAL);
}

TEST_F(VirtualCameraCalls, RefusesPicturesOnTheMetadataNode) {
    VideoClient client("/dev/video1");
    v4l2_capability capability{};
    ASSERT_EQ(client.request(VIDIOC_QUERYCAP, capability), 0);
    EXPECT_NE(capability.capabilities & V4L2_CAP_VIDEO_CAPTURE, 0U);
    EXPECT_EQ(capability.device_caps & V4L2_CAP_VIDEO_CAPTURE, 0U);
    EXPECT_EQ(client.setFormat(kMjpeg, 640, 480), EINVAL);
}

TEST_F(VirtualCameraCalls, NamesCardAndDriver) {
    VideoClient client("/dev/video0");
    v4l2_capability capability{};
    ASSERT_EQ(client.request(VIDIOC_QUERYCAP, capability), 0);
    EXPECT_STREQ(reinterpret_cast<const char*>(capability.driver), "uvcvideo");
    EXPECT_STREQ(reinterpret_cast<const char*>(capability.card), "Doc Cam: Doc Cam");
    EXPECT_EQ(reinterpret_cast<const char*>(capability.bus_info), virtualcam::busInfo(camera_));
}

TEST_F(VirtualCameraCalls, LogsCallsInTheirOrder) {
    virtualcam::clearCalls();
    { EXPECT_EQ(VideoClient("/dev/video0").setFormat(kYuyv, 640, 480), 0); }
    std::vector<std::string> requests;
    for (const virtualcam::Call& call : virtualcam::calls()) {
        requests.push_back(call.request);
    }
    EXPECT_THAT(requests, ElementsAre("open", "S_FMT", "close"));
    EXPECT_EQ(virtualcam::callCount("VIDIOC_S_FMT"), 1);
}

TEST_F(VirtualCameraCalls, DoesNotReuseANodeThatIsHeldOpen) {
    const VideoClient holder("/dev/video0");
    bed_.unplug(camera_);
    bed_.plug(camera_);
    EXPECT_EQ(bed_.path(camera_), "/dev/video1");
    EXPECT_EQ(virtualcam::nodes(camera_).metadata, 2);
}

TEST_F(VirtualCameraCalls, RecordsAndScalesPureSleeps) {
    virtualcam::setSleepScale(0);
    timeval hour{3600, 0};
    EXPECT_EQ(select(0, nullptr, nullptr, nullptr, &hour), 0);
    timeval short_{0, 30000};
    EXPECT_EQ(select(0, nullptr, nullptr, nullptr, &short_), 0);
    const std::vector<virtualcam::Sleep> sleeps = virtualcam::sleeps();
    ASSERT_EQ(sleeps.size(), 2U);
    EXPECT_EQ(sleeps[0].microseconds, 3600000000L);
    EXPECT_EQ(sleeps[1].microseconds, 30000);
    EXPECT_EQ(sleeps[0].thread, gettid());
}

TEST_F(VirtualCameraCalls, MovesTheSheetFromTheNextFrameOn) {
    virtualcam::SceneSettings still = virtualcam::scene(camera_);
    still.noise = 0;
    virtualcam::setScene(camera_, still);
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kYuyv, 640, 480), 0);
    v4l2_buffer record;
    ASSERT_EQ(client.takeFrame(record), 0);
    const auto before = virtualcam::lastFrame(camera_)->bytes;
    ASSERT_EQ(client.takeFrame(record), 0);
    EXPECT_EQ(*virtualcam::lastFrame(camera_)->bytes, *before);
    virtualcam::moveSheet(camera_, 0.1, 0, 2);
    ASSERT_EQ(client.takeFrame(record), 0);
    EXPECT_NE(*virtualcam::lastFrame(camera_)->bytes, *before);
}

TEST_F(VirtualCameraCalls, AddsDifferentNoiseToEachFrame) {
    VideoClient client("/dev/video0");
    ASSERT_EQ(client.start(kMjpeg, 640, 480), 0);
    v4l2_buffer record;
    ASSERT_EQ(client.takeFrame(record), 0);
    const auto first = virtualcam::lastFrame(camera_)->bytes;
    ASSERT_EQ(client.takeFrame(record), 0);
    EXPECT_NE(*virtualcam::lastFrame(camera_)->bytes, *first);
}

} // namespace
