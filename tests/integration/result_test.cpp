// The functions return the constants of the public header.
#include "integration/session_fixture.h"
#include "support/sanitized.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace doccam::test {
namespace {

using virtualcam::FaultKind;

class Results : public SessionTest {
  protected:
    // The path of an existing file.
    std::string madeFile(const std::string& name) const {
        std::string path = folder_.file(name);
        std::ofstream(path) << name;
        return path;
    }

    const ScratchFolder folder_;
    const std::string missing_ = folder_.file("missing/file");
};

// The images of so large a frame exceed the remaining memory.
[[noreturn]] void openWithLittleMemory() {
    getCameraResolutionCount(0);
    const rlimit space{1536ULL << 20, 1536ULL << 20};
    setrlimit(RLIMIT_AS, &space);
    _exit(openCamera(0, 26000, 26000) == DOCCAM_OPEN_INTERNAL ? 0 : 1);
}

struct FailingStep {
    const char* request;
    DoccamResult result;
    int value;
};

void PrintTo(const FailingStep& step, std::ostream* out) {
    *out << step.request;
}

class OpeningResults : public SessionTest, public testing::WithParamInterface<FailingStep> {};

TEST_P(OpeningResults, NameTheStepThatFailed) {
    ASSERT_GT(getCameraResolutionCount(kIndexOfEarlier), 0);
    addCallFault(GetParam().request, EIO);
    EXPECT_EQ(openCamera(kIndexOfEarlier, 640, 480), GetParam().result);
    EXPECT_EQ(GetParam().result, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    EachStep, OpeningResults,
    testing::Values(FailingStep{"open", DOCCAM_OPEN_NO_NODE, -3},
                    FailingStep{"VIDIOC_TRY_FMT", DOCCAM_OPEN_TRY_FORMAT, -5},
                    FailingStep{"VIDIOC_S_FMT", DOCCAM_OPEN_SET_FORMAT, -6},
                    FailingStep{"VIDIOC_G_FMT", DOCCAM_OPEN_GET_FORMAT, -7},
                    FailingStep{"VIDIOC_REQBUFS", DOCCAM_OPEN_REQUEST_BUFFERS, -8},
                    FailingStep{"VIDIOC_QUERYBUF", DOCCAM_OPEN_QUERY_BUFFER, -10},
                    FailingStep{"mmap", DOCCAM_OPEN_MAP_BUFFER, -11},
                    FailingStep{"VIDIOC_QBUF", DOCCAM_OPEN_QUEUE_BUFFER, -12},
                    FailingStep{"VIDIOC_STREAMON", DOCCAM_OPEN_STREAM_ON, -13}),
    [](const auto& step) {
        const std::string name = step.param.request;
        return name.substr(name.find('_') + 1);
    });

TEST_F(Results, OfOpeningDistinguishWhatIsMissing) {
    EXPECT_EQ(openCamera(2, 640, 480), DOCCAM_OPEN_NO_CAMERA);
    EXPECT_EQ(DOCCAM_OPEN_NO_CAMERA, -1);
    EXPECT_EQ(openCamera(kIndexOfEarlier, 0, 480), DOCCAM_OPEN_NO_SIZE);
    EXPECT_EQ(DOCCAM_OPEN_NO_SIZE, -2);
    addFrameFault(FaultKind::kGrant, 1, 4);
    EXPECT_EQ(openCamera(kIndexOfEarlier, 640, 480), DOCCAM_OPEN_TOO_FEW_BUFFERS);
    EXPECT_EQ(DOCCAM_OPEN_TOO_FEW_BUFFERS, -9);
}

TEST_F(Results, OfOpeningIncludeAShortageOfMemory) {
    if (kSanitized) {
        GTEST_SKIP() << "a sanitizer needs the address space itself";
    }
    EXPECT_EQ(DOCCAM_OPEN_INTERNAL, -14);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(openWithLittleMemory(), testing::ExitedWithCode(0), "");
}

TEST_F(Results, OfSizesTellWhetherAnyIsKnown) {
    EXPECT_EQ(getCameraResolution(0, nullptr, nullptr), DOCCAM_SIZE_NONE_KNOWN);
    EXPECT_EQ(DOCCAM_SIZE_NONE_KNOWN, -2);
    bed_.remove(earlier_);
    virtualcam::CameraDescription camera = secondCamera();
    camera.formats = {{virtualcam::fourcc("YUYV"), {{640, 480}}, {}, {30}}};
    bed_.add(camera);
    SetVideoFormat(kMjpegFormat);
    getDeviceCount();
    getCameraResolutionCount(kIndexOfEarlier);
    EXPECT_EQ(getCameraResolution(0, nullptr, nullptr), DOCCAM_SIZE_NONE_IN_FORMAT);
    EXPECT_EQ(DOCCAM_SIZE_NONE_IN_FORMAT, -1);
    SetVideoFormat(kYuyvFormat);
    EXPECT_EQ(getCameraResolution(0, nullptr, nullptr), DOCCAM_OK);
}

TEST_F(Results, OfControlsNameTheRequestThatFailed) {
    const auto get = [] { return GetVideoCtlParam(0, nullptr, nullptr, nullptr, nullptr); };
    EXPECT_EQ(get(), DOCCAM_CONTROL_GET_UNAVAILABLE);
    EXPECT_EQ(SetVideoCtlParam(0, 1), DOCCAM_CONTROL_SET_REFUSED);
    EXPECT_EQ(SetVideoCtlDefaultParam(0), DOCCAM_CONTROL_RESET_UNAVAILABLE);
    openSmall(kMjpegFormat);
    EXPECT_EQ(get(), DOCCAM_OK);
    addCallFault("VIDIOC_G_CTRL", EIO);
    EXPECT_EQ(get(), DOCCAM_CONTROL_GET_UNREADABLE);
    addCallFault("VIDIOC_S_CTRL", EIO);
    EXPECT_EQ(SetVideoCtlParam(0, 1), DOCCAM_CONTROL_SET_REFUSED);
    addCallFault("VIDIOC_G_CTRL", EIO);
    EXPECT_EQ(SetVideoCtlDefaultParam(0), DOCCAM_CONTROL_RESET_UNREADABLE);
    addCallFault("VIDIOC_S_CTRL", EIO);
    EXPECT_EQ(SetVideoCtlDefaultParam(0), DOCCAM_CONTROL_RESET_REFUSED);
    EXPECT_EQ(DOCCAM_CONTROL_GET_UNAVAILABLE, -1);
    EXPECT_EQ(DOCCAM_CONTROL_GET_UNREADABLE, -2);
    EXPECT_EQ(DOCCAM_CONTROL_SET_REFUSED, -1);
    EXPECT_EQ(DOCCAM_CONTROL_RESET_UNAVAILABLE, -10001);
    EXPECT_EQ(DOCCAM_CONTROL_RESET_UNREADABLE, -10002);
    EXPECT_EQ(DOCCAM_CONTROL_RESET_REFUSED, -10003);
}

TEST_F(Results, OfFocusingNameTheRequestThatFailed) {
    EXPECT_EQ(ManualFocus(), DOCCAM_FOCUS_NO_SESSION);
    EXPECT_EQ(ManualFocusEx(), DOCCAM_FOCUS_NO_SESSION);
    openSmall(kMjpegFormat);
    EXPECT_EQ(ManualFocusEx(), DOCCAM_OK);
    for (const auto focus : {ManualFocus, ManualFocusEx}) {
        addCallFault("VIDIOC_G_CTRL", EIO);
        EXPECT_EQ(focus(), DOCCAM_FOCUS_UNREADABLE);
        addCallFault("VIDIOC_S_CTRL", EIO);
        EXPECT_EQ(focus(), DOCCAM_FOCUS_REFUSED);
    }
    addCallFault("VIDIOC_S_CTRL", EIO, 2);
    EXPECT_EQ(ManualFocusEx(), DOCCAM_FOCUS_LEFT_OFF);
    EXPECT_EQ(DOCCAM_FOCUS_NO_SESSION, -1);
    EXPECT_EQ(DOCCAM_FOCUS_UNREADABLE, -2);
    EXPECT_EQ(DOCCAM_FOCUS_REFUSED, -3);
    EXPECT_EQ(DOCCAM_FOCUS_LEFT_OFF, -4);
}

TEST_F(Results, OfFilesDistinguishWhatIsMissing) {
    EXPECT_EQ(captureImage(missing_.c_str()), DOCCAM_STILL_NOT_REQUESTED);
    EXPECT_EQ(DOCCAM_STILL_NOT_REQUESTED, -1);
    EXPECT_EQ(AddImageFileToPDF(missing_.c_str()), DOCCAM_QUEUE_NO_FILE);
    EXPECT_EQ(AddImagePath(missing_.c_str()), DOCCAM_QUEUE_NO_FILE);
    EXPECT_EQ(DOCCAM_QUEUE_NO_FILE, -1);
    EXPECT_EQ(CombineToPDF(missing_.c_str(), false), DOCCAM_PDF_NOTHING_QUEUED);
    EXPECT_EQ(DOCCAM_PDF_NOTHING_QUEUED, -1);
    EXPECT_EQ(AddImageFileToPDF(madeFile("page.txt").c_str()), DOCCAM_OK);
    EXPECT_EQ(CombineToPDF(missing_.c_str(), false), DOCCAM_PDF_NOT_WRITTEN);
    EXPECT_EQ(DOCCAM_PDF_NOT_WRITTEN, -2);
}

TEST_F(Results, OfMergingTellWhatBecameOfTheQueue) {
    EXPECT_EQ(AddImagePath(madeFile("first").c_str()), DOCCAM_OK);
    EXPECT_EQ(MergeImages(missing_.c_str(), 0, 0, false), DOCCAM_MERGE_TOO_FEW_QUEUED);
    EXPECT_EQ(DOCCAM_MERGE_TOO_FEW_QUEUED, -1);
    EXPECT_EQ(AddImagePath(madeFile("second").c_str()), DOCCAM_OK);
    EXPECT_EQ(MergeImages(missing_.c_str(), 0, 0, false), DOCCAM_MERGE_NO_PICTURE);
    EXPECT_EQ(DOCCAM_MERGE_NO_PICTURE, -2);
}

TEST_F(Results, OfGrabbingDistinguishAFailingDriverFromABadIndex) {
    std::vector<unsigned char> frame(640 * 480 * 3);
    int length = 0;
    EXPECT_EQ(grabImage(frame.data(), &length), DOCCAM_GRAB_FAILED);
    EXPECT_EQ(DOCCAM_GRAB_FAILED, -1);
    // The stream ends at its first frame, so this thread grabs the next one.
    addFrameFault(FaultKind::kIndex, 1, 99);
    addFrameFault(FaultKind::kIndex, 2, 99);
    openSmall(kYuyvFormat);
    while (virtualcam::callCount("VIDIOC_DQBUF") < 1) {
        std::this_thread::yield();
    }
    EXPECT_EQ(grabImage(frame.data(), &length), DOCCAM_GRAB_NO_BUFFER);
    EXPECT_EQ(DOCCAM_GRAB_NO_BUFFER, -100);
}

TEST_F(Results, OfBuildingBlocksNameTheCause) {
    cv::Mat output(8, 8, CV_8UC3, cv::Scalar::all(0));
    unsigned char pixel[4] = {};
    EXPECT_EQ(Mjpeg2RgbConvertEx(pixel, sizeof pixel, output), DOCCAM_DECODE_FAILED);
    EXPECT_EQ(DOCCAM_DECODE_FAILED, -1);
    EXPECT_EQ(CovertOneLine(1, 32, 32, pixel, pixel), DOCCAM_COPY_LINE_NOT_24_BITS);
    EXPECT_EQ(DOCCAM_COPY_LINE_NOT_24_BITS, -1);
    EXPECT_EQ(DrawingEdge(nullptr, 640, 480, 0), DOCCAM_OUTLINE_NONE);
    EXPECT_EQ(DOCCAM_OUTLINE_NONE, -1);
    EXPECT_EQ(Web_ZoomIn(), DOCCAM_VIEW_NO_SESSION);
    EXPECT_EQ(DOCCAM_VIEW_NO_SESSION, -1);
}

TEST_F(Results, OfAnOutlineTooSmallForASheetAreDistinct) {
    cv::Mat frame(480, 640, CV_8UC3, cv::Scalar::all(0));
    frame(cv::Rect(300, 200, 40, 40)).setTo(cv::Scalar::all(255));
    EXPECT_EQ(DrawingEdge(frame.data, frame.cols, frame.rows, 0), DOCCAM_OUTLINE_TOO_SMALL);
    EXPECT_EQ(DOCCAM_OUTLINE_TOO_SMALL, -2);
}

} // namespace
} // namespace doccam::test
