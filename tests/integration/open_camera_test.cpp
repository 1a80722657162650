#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/printed_text.h"

#include <doccam/doccam.hpp>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstring>

namespace doccam::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using virtualcam::FaultKind;

class OpenCamera : public SessionTest {};

std::string text(const unsigned char* field) {
    return reinterpret_cast<const char*>(field);
}

// The opening lines about the camera at node, from the driver's data.
std::string cameraLines(const std::string& node) {
    const int descriptor = open(node.c_str(), O_RDWR);
    v4l2_capability capability{};
    ioctl(descriptor, VIDIOC_QUERYCAP, &capability);
    const unsigned version = capability.version;
    std::string lines = "Driver Name:" + text(capability.driver) +
                        " Card Name:" + text(capability.card) +
                        " Bus info:" + text(capability.bus_info) +
                        " Driver Version:" + std::to_string(version >> 16 & 255) + "." +
                        std::to_string(version >> 8 & 255) + "." + std::to_string(version & 255) +
                        "Support format:\n";
    v4l2_fmtdesc format{};
    format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    for (int failed = 0; failed == 0; ++format.index) {
        failed = ioctl(descriptor, VIDIOC_ENUM_FMT, &format);
        lines += "index " + std::to_string(format.index) + ", format " + text(format.description);
    }
    v4l2_streamparm rate{};
    rate.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    ioctl(descriptor, VIDIOC_G_PARM, &rate);
    lines +=
        "befor:framerate: numerator = " + std::to_string(rate.parm.capture.timeperframe.numerator) +
        ",denominator = " + std::to_string(rate.parm.capture.timeperframe.denominator);
    close(descriptor);
    return lines;
}

TEST_F(OpenCamera, PrintsEachStepVerbatim) {
    SetVideoFormat(kMjpegFormat);
    ASSERT_GT(getCameraResolutionCount(0), 0);
    const std::string expected = cameraLines(bed_.path(earlier_));
    PrintedText printed;
    ASSERT_EQ(openCamera(0, 640, 480), 0);
    const std::string lines = printed.take();

    v4l2_format format{};
    format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    ioctl(state().session.cam_fd.get(), VIDIOC_G_FMT, &format);
    std::string buffers;
    for (unsigned i = 0; i < 5; ++i) {
        v4l2_buffer buffer{};
        buffer.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        buffer.memory = V4L2_MEMORY_MMAP;
        buffer.index = i;
        ioctl(state().session.cam_fd.get(), VIDIOC_QUERYBUF, &buffer);
        buffers += "buffer.length: " + std::to_string(buffer.length) +
                   "buffer.m.offset: " + std::to_string(buffer.m.offset);
    }
    EXPECT_EQ(lines, expected +
                         "fmt.type:\t\t1pix.pixelformat:\tMJPGpix.width:\t\t640pix.height:\t\t480"
                         "pix.field:\t\t" +
                         std::to_string(format.fmt.pix.field) + "req.count: 5" + buffers +
                         "ovisto->openCamera OK\n");
}

TEST_F(OpenCamera, AsksForYuyvUnlessMjpegIsSet) {
    ASSERT_EQ(openCamera(0, 640, 480), 0);
    EXPECT_STREQ(state().session.pix_format, "YUYV");
    closeCamera();
    openSmall(kMjpegFormat);
    EXPECT_STREQ(state().session.pix_format, "MJPG");
    closeCamera();
    openSmall(-3);
    EXPECT_STREQ(state().session.pix_format, "YUYV");
}

TEST_F(OpenCamera, CapturesTheEnlargedSizeAtTheFullOne) {
    SetVideoFormat(kMjpegFormat);
    ASSERT_EQ(openCamera(0, 3672, 2856), 0);
    EXPECT_TRUE(state().session.isInsert1000M);
    EXPECT_EQ(state().session.nWidth, 3264);
    EXPECT_EQ(state().session.nHeight, 2448);
    EXPECT_EQ(state().session.nSize, 3264 * 2448 * 3);
    closeCamera();
    ASSERT_EQ(openCamera(0, 3264, 2448), 0);
    EXPECT_FALSE(state().session.isInsert1000M);
}

TEST_F(OpenCamera, AllocatesImagesOfTheRequestedSizeWhateverTheDriverSets) {
    SetVideoFormat(kMjpegFormat);
    addFrameFault(FaultKind::kStall, 1);
    ASSERT_EQ(openCamera(0, 700, 500), 0);
    EXPECT_EQ(state().session.frames->srcimage.size(), cv::Size(700, 500));
    EXPECT_EQ(state().session.frames->roimage.size(), cv::Size(500, 700));
    EXPECT_FALSE(state().session.frames->srcimage.isSubmatrix());
}

TEST_F(OpenCamera, EnumeratesSizesOnlyWhenNoneIsKnown) {
    ASSERT_EQ(openCamera(0, 640, 480), 0);
    closeCamera();
    virtualcam::clearCalls();
    ASSERT_EQ(openCamera(0, 640, 480), 0);
    EXPECT_EQ(virtualcam::callCount("VIDIOC_ENUM_FRAMESIZES"), 0);
}

TEST_F(OpenCamera, FailsForAnIndexPastTheFoundCameras) {
    EXPECT_EQ(openCamera(2, 640, 480), -1);
    EXPECT_EQ(openCamera(-1, 640, 480), -1);
    bed_.remove(earlier_);
    bed_.remove(later_);
    getDeviceCount();
    PrintedText printed;
    EXPECT_EQ(openCamera(0, 640, 480), -1);
    EXPECT_EQ(printed.take(), "");
    EXPECT_EQ(state().session.pdecode, nullptr);
}

TEST_F(OpenCamera, FailsWhenNoSizeIsKnown) {
    bed_.remove(earlier_);
    virtualcam::CameraDescription camera = fastCamera("1778", "0210");
    camera.formats = {{virtualcam::fourcc("GREY"), {{640, 480}}, {}, {30}}};
    bed_.add(camera);
    EXPECT_EQ(openCamera(0, 640, 480), -2);
    EXPECT_EQ(virtualcam::openHandles(), 0);
}

TEST_F(OpenCamera, RefusesImpossibleSizes) {
    for (const auto& [width, height] :
         {std::pair(0, 480), std::pair(640, -1), std::pair(46341, 46341), std::pair(1 << 30, 4)}) {
        EXPECT_EQ(openCamera(0, width, height), -2) << width << " x " << height;
    }
    EXPECT_EQ(state().session.pdecode, nullptr);
    EXPECT_EQ(virtualcam::openHandles(), 0);
}

TEST_F(OpenCamera, FailsWhenTheNodeCannotBeOpened) {
    ASSERT_GT(getCameraResolutionCount(0), 0);
    addCallFault("open", EACCES);
    PrintedText printed;
    EXPECT_EQ(openCamera(0, 640, 480), -3);
    EXPECT_EQ(printed.take(), "打开相机节点失败\n");
    EXPECT_EQ(state().session.pdecode, nullptr);
}

struct RequestFailure {
    const char* request;
    int code;
    const char* line; // followed by errno and its text
    bool releasesDecoder;
};

// Names the case in a failure message.
void PrintTo(const RequestFailure& failure, std::ostream* out) {
    *out << failure.request;
}

class OpenCameraFailures : public SessionTest,
                           public testing::WithParamInterface<RequestFailure> {};

TEST_P(OpenCameraFailures, PrintTheirLineAndLeaveTheDescriptorForTheNextOpen) {
    const RequestFailure failure = GetParam();
    ASSERT_GT(getCameraResolutionCount(0), 0);
    addCallFault(failure.request, EBUSY);
    PrintedText printed;
    EXPECT_EQ(openCamera(0, 640, 480), failure.code);
    const std::string reason = std::to_string(EBUSY) + "(" + strerror(EBUSY) + ")";
    EXPECT_THAT(printed.take(),
                EndsWith(failure.line + reason + (failure.code == -13 ? "\n" : "")));
    EXPECT_EQ(state().session.pdecode == nullptr, failure.releasesDecoder);
    EXPECT_FALSE(state().session.bKeep);
    EXPECT_NE(state().session.cam_fd.get(), -1);

    PrintedText again;
    EXPECT_EQ(openCamera(0, 640, 480), 0);
    EXPECT_THAT(again.take(),
                testing::StartsWith("---------openCamera > closeCamera AA---------\n"
                                    "---------openCamera closeCamera!---------\nDriver Name:"));
    EXPECT_EQ(virtualcam::openHandles(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    OpenCamera, OpenCameraFailures,
    testing::Values(RequestFailure{"VIDIOC_TRY_FMT", -5, "ioctl(VIDIOC_TRY_FMT) failed ", true},
                    RequestFailure{"VIDIOC_S_FMT", -6, "ioctl(VIDIOC_S_FMT) failed ", true},
                    RequestFailure{"VIDIOC_REQBUFS", -8, "ioctl(VIDIOC_REQBUFS) failed ", true},
                    RequestFailure{"VIDIOC_QUERYBUF", -10, "ioctl(VIDIOC_QUERYBUF) failed ", false},
                    RequestFailure{"mmap", -11,
                                   "MAP_FAILED!!!!!!!!!!!!!!!!!!!!!!!!!!!!\nmmap() failed ", false},
                    RequestFailure{"VIDIOC_QBUF", -12, "ioctl(VIDIOC_QBUF) failed ", false},
                    RequestFailure{"VIDIOC_STREAMON", -13, "ioctl(VIDIOC_STREAMON) failed ", true}),
    [](const auto& test) {
        std::string name = test.param.request;
        return name.substr(name.find('_') + 1);
    });

TEST_F(OpenCamera, FailsWhenTheFormatCannotBeReadBack) {
    ASSERT_GT(getCameraResolutionCount(0), 0);
    addCallFault("VIDIOC_G_FMT", EIO);
    PrintedText printed;
    EXPECT_EQ(openCamera(0, 640, 480), -7);
    EXPECT_THAT(printed.take(), EndsWith("set format failed!\n"));
    EXPECT_EQ(state().session.pdecode, nullptr);
}

TEST_F(OpenCamera, FailsWhenTheDriverGrantsTooFewBuffers) {
    ASSERT_GT(getCameraResolutionCount(0), 0);
    addFrameFault(FaultKind::kGrant, 1, 4);
    PrintedText printed;
    EXPECT_EQ(openCamera(0, 640, 480), -9);
    EXPECT_THAT(printed.take(), EndsWith("req.count: 4request buffer failed\n"));
    EXPECT_EQ(state().session.pdecode, nullptr);
}

TEST_F(OpenCamera, LeavesBuffersBeyondTheRequestedOnesAlone) {
    addFrameFault(FaultKind::kGrant, 1, 8);
    watchFrames();
    openSmall(kMjpegFormat);
    EXPECT_EQ(virtualcam::liveMappings(), 5);
    waitForFrames(12);
    closeCamera();
    EXPECT_EQ(virtualcam::liveMappings(), 0);
}

TEST_F(OpenCamera, RestartsARunningSession) {
    openSmall(kYuyvFormat);
    PrintedText printed;
    EXPECT_EQ(openCamera(0, 1280, 960), 0);
    EXPECT_THAT(printed.take(), HasSubstr("---------openCamera > closeCamera BB---------\n"
                                          "---------openCamera closeCamera!---------\nDriver"));
    EXPECT_EQ(state().session.frames->srcimage.cols, 1280);
    EXPECT_EQ(virtualcam::openHandles(), 1);
    EXPECT_EQ(virtualcam::liveMappings(), 5);
}

TEST_F(OpenCamera, ARestartedSessionDecodesNoMjpegUntilAFreshOpen) {
    openSmall(kMjpegFormat);
    openSmall(kMjpegFormat);
    EXPECT_EQ(state().session.pdecode, nullptr);
    closeCamera();
    openSmall(kMjpegFormat);
    EXPECT_NE(state().session.pdecode, nullptr);
}

TEST_F(OpenCamera, AllocatesImagesOfTheNewSizeAfterAClose) {
    openSmall(kYuyvFormat);
    closeCamera();
    ASSERT_EQ(openCamera(0, 1280, 960), 0);
    EXPECT_EQ(state().session.frames->srcimage.size(), cv::Size(1280, 960));
    EXPECT_EQ(state().session.frames->roimage.size(), cv::Size(960, 1280));
}

TEST_F(OpenCamera, KeepsTheSizeOfImagesThatAFailedOpenLeft) {
    ASSERT_GT(getCameraResolutionCount(0), 0);
    addCallFault("VIDIOC_STREAMON", EIO);
    ASSERT_EQ(openCamera(0, 1280, 960), -13);
    watchFrames();
    ASSERT_EQ(openCamera(0, 640, 480), 0);
    waitForFrames(2);
    EXPECT_EQ(lastSeen().size(), cv::Size(1280, 960));
}

TEST_F(OpenCamera, KeepsItsNodeFromProgramsThatTheHostStarts) {
    openSmall(kMjpegFormat);
    EXPECT_EQ(fcntl(state().session.cam_fd.get(), F_GETFD), FD_CLOEXEC);
}

} // namespace
} // namespace doccam::test
