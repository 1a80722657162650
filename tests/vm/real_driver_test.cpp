// The library against a real kernel's UVC driver and udev.
#include "support/scratch_folder.h"
#include "vm/bench.h"
#include "vm/frame_watch.h"

#include <doccam/doccam.h>

#include <gmock/gmock.h>
#include <linux/videodev2.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <stdexcept>
#include <string>

namespace doccam::vm {
namespace {

using virtualcam::Size;

constexpr int kMjpegFormat = 0;
constexpr int kYuyvFormat = 1;
constexpr int kBar = 0;
constexpr int kQr = 1;

class RealDriver : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        bench_ = std::make_unique<Bench>();
        Bench::printGuest();
        watchFrames();
    }

    static void TearDownTestSuite() { bench_.reset(); }

    RealDriver() { SetCutType(0); }

    ~RealDriver() override {
        if (streaming_) {
            closeCamera();
        }
        camera(0).frames.hold({});
        EXPECT_EQ(openVideoNodes(), 0);
    }

    static BenchCamera& camera(int index) { return bench_->camera(index); }

    static std::uint32_t fourcc(int format) {
        return format == kMjpegFormat ? virtualcam::kMjpeg : virtualcam::kYuyv;
    }

    // Draws the pictures of camera index, then opens it and starts to stream.
    void stream(int index, int format, Size size) {
        pictures_ = camera(index).frames.pictures(fourcc(format), size);
        SetVideoFormat(format);
        expectStream();
        if (const int result = openCamera(index, size.width, size.height); result != 0) {
            throw std::runtime_error("openCamera: " + std::to_string(result));
        }
        streaming_ = true;
    }

    void endStream() {
        streaming_ = false;
        EXPECT_EQ(closeCamera(), 0);
    }

    // Takes a still and reads it back, blue first.
    static cv::Mat still(const std::string& path) {
        EXPECT_EQ(captureImage(path.c_str()), 0);
        nextFrame();
        nextFrame(); // on a slow machine captureImage() returns before the still is taken
        return cv::imread(path);
    }

    // Which of the sent pictures this frame is, or -1.
    int pictureIn(const cv::Mat& frame) {
        for (std::size_t i = 0; i < pictures_.size(); ++i) {
            if (frame.size() != pictures_[i].size()) {
                return -1;
            }
            if (cv::norm(frame, pictures_[i], cv::NORM_INF) == 0) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }

    // Takes at least count frames, and as many as show every picture that the camera sends.
    void expectFramesAsSent(int count) {
        std::set<int> seen;
        int frames = 0;
        while (frames < count || seen.size() < SheetFrames::kPictures) {
            const int picture = pictureIn(nextFrame());
            ASSERT_GE(picture, 0) << "frame " << frames << " is none of those sent";
            seen.insert(picture);
            ++frames;
        }
        std::printf("guest: %d frames of %d x %d to the byte as sent\n", frames, pictures_[0].cols,
                    pictures_[0].rows);
    }

    static inline std::unique_ptr<Bench> bench_;
    std::vector<cv::Mat> pictures_;
    bool streaming_ = false;
};

TEST_F(RealDriver, CamerasAreFoundInTheOrderOfTheTable) {
    ASSERT_EQ(getDeviceCount(), 2);
    EXPECT_STREQ(getCameraName(0), " Doc Cam");
    EXPECT_STREQ(getCameraName(1), " Sheet Cam");
    EXPECT_EQ(getCameraName(2), nullptr);
}

TEST_F(RealDriver, SizesAreThoseThatTheCameraDescribes) {
    for (const int index : {0, 1}) {
        for (const auto& format : camera(index).usb.description().formats) {
            SetVideoFormat(format.pixelFormat == virtualcam::kMjpeg ? kMjpegFormat : kYuyvFormat);
            std::vector<Size> expected = format.sizes;
            if (expected.back() == Size{3264, 2448}) {
                expected.push_back({3672, 2856});
            }
            std::vector<Size> sizes(static_cast<std::size_t>(getCameraResolutionCount(index)));
            for (std::size_t i = 0; i < sizes.size(); ++i) {
                getCameraResolution(static_cast<int>(i), &sizes[i].width, &sizes[i].height);
            }
            EXPECT_EQ(sizes, expected) << index;
        }
    }
}

TEST_F(RealDriver, MjpegFramesArriveAsSent) {
    stream(0, kMjpegFormat, {1280, 960});
    expectFramesAsSent(12);
}

TEST_F(RealDriver, YuyvFramesArriveAsSent) {
    stream(0, kYuyvFormat, {640, 480});
    expectFramesAsSent(12);
}

TEST_F(RealDriver, TheSecondCameraSendsItsOwnFrames) {
    for (const int format : {kMjpegFormat, kYuyvFormat}) {
        stream(1, format, {640, 480});
        expectFramesAsSent(6);
        endStream();
    }
}

TEST_F(RealDriver, FramesOfEightMegapixelsArriveAsSent) {
    stream(0, kMjpegFormat, {3264, 2448});
    expectFramesAsSent(3);
}

TEST_F(RealDriver, AStillIsThePictureSent) {
    const test::ScratchFolder folder;
    stream(0, kMjpegFormat, {1280, 960});
    cv::Mat page = still(folder.file("page.png"));
    ASSERT_FALSE(page.empty());
    cv::cvtColor(page, page, cv::COLOR_BGR2RGB);
    EXPECT_GE(pictureIn(page), 0);
}

TEST_F(RealDriver, AStillIsCroppedToTheSheet) {
    const test::ScratchFolder folder;
    const std::string path = folder.file("sheet.jpg");
    camera(0).frames.hold(1);
    stream(0, kYuyvFormat, {1600, 1200});
    SetCutType(1);
    nextFrame();
    nextFrame(); // a still is cropped to the outline of an earlier frame
    const cv::Mat sheet = still(path);
    ASSERT_FALSE(sheet.empty());
    EXPECT_NEAR(static_cast<double>(sheet.rows) / sheet.cols, 297.0 / 210.0, 0.03);
    EXPECT_NEAR(sheet.rows, 0.8 * 1200, 24);
    EXPECT_STREQ(RecogBarQrCodeFromFile(path.c_str(), kQr),
                 camera(0).frames.scene().qrText.c_str());
}

TEST_F(RealDriver, CodesAreReadFromTheStream) {
    stream(0, kYuyvFormat, {1600, 1200});
    const auto& scene = camera(0).frames.scene();
    EXPECT_EQ(RecogBarQrCode(kQr), scene.qrText);
    EXPECT_EQ(RecogBarQrCode(kBar), scene.code128Text);
}

TEST_F(RealDriver, ControlsAreThoseOfTheCamera) {
    constexpr std::uint32_t kIds[] = {V4L2_CID_BRIGHTNESS, V4L2_CID_CONTRAST, V4L2_CID_SATURATION,
                                      V4L2_CID_HUE,        V4L2_CID_GAIN,     V4L2_CID_GAMMA};
    for (const int index : {0, 1}) {
        stream(index, kMjpegFormat, {640, 480});
        const auto& controls = camera(index).usb.description().controls;
        for (int selector = 0; selector < 6; ++selector) {
            const auto control =
                std::ranges::find(controls, kIds[selector], &virtualcam::ControlDescription::id);
            int minimum = -1, maximum = -1, byDefault = -1, current = -1;
            EXPECT_EQ(GetVideoCtlParam(selector, &minimum, &maximum, &byDefault, &current), 0);
            EXPECT_EQ(minimum, control->minimum) << control->name;
            EXPECT_EQ(maximum, control->maximum) << control->name;
            EXPECT_EQ(byDefault, control->defaultValue) << control->name;
            EXPECT_EQ(current, control->defaultValue) << control->name;
        }
        endStream();
    }
}

TEST_F(RealDriver, ControlsReachTheCamera) {
    stream(0, kMjpegFormat, {640, 480});
    const UsbCamera& usb = camera(0).usb;
    constexpr int kBrightness = 0;
    constexpr int kHue = 3;
    EXPECT_EQ(SetVideoCtlParam(kBrightness, 17), 0);
    EXPECT_EQ(usb.control(V4L2_CID_BRIGHTNESS), 17);
    EXPECT_EQ(SetVideoCtlParam(kHue, -25), 0);
    EXPECT_EQ(usb.control(V4L2_CID_HUE), -25);
    int minimum = 0, maximum = 0, byDefault = 0, current = 0;
    EXPECT_EQ(GetVideoCtlParam(kHue, &minimum, &maximum, &byDefault, &current), 0);
    EXPECT_EQ(current, -25);
    EXPECT_EQ(SetVideoCtlDefaultParam(kHue), 0);
    EXPECT_EQ(usb.control(V4L2_CID_HUE), 0);
    for (const int zoom : {1, 0}) {
        EXPECT_EQ(ManualFocus(), 0);
        EXPECT_EQ(usb.control(V4L2_CID_ZOOM_ABSOLUTE), zoom);
    }
    EXPECT_EQ(ManualFocusEx(), 0);
    EXPECT_EQ(usb.control(V4L2_CID_FOCUS_AUTO), 1);
    expectFramesAsSent(3);
}

TEST_F(RealDriver, AForkedChildThatClosesLeavesTheStreamToItsParent) {
    stream(0, kMjpegFormat, {640, 480});
    expectFramesAsSent(3);
    const pid_t child = fork();
    if (child == 0) {
        closeCamera();
        _exit(openVideoNodes());
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    expectFramesAsSent(6);
}

TEST_F(RealDriver, AProgramThatTheHostStartsDoesNotHoldTheCamera) {
    stream(0, kMjpegFormat, {640, 480});
    const std::string look = "ls -l /proc/" + std::to_string(getpid()) + "/fd | grep -q /dev/video";
    EXPECT_EQ(std::system(look.c_str()), 0) << "the host holds it";
    const int found = std::system("ls -l /proc/self/fd | grep -q /dev/video");
    ASSERT_TRUE(WIFEXITED(found));
    EXPECT_EQ(WEXITSTATUS(found), 1) << "a program does not";
}

TEST_F(RealDriver, ACameraUnpluggedInMidStreamIsGone) {
    for (const int format : {kMjpegFormat, kYuyvFormat}) {
        stream(0, format, {640, 480});
        expectFramesAsSent(3);
        bench_->unplug(camera(0));
        EXPECT_EQ(endOfStream(), "the camera was unplugged");
        endStream();
        EXPECT_EQ(openVideoNodes(), 0);

        ASSERT_EQ(getDeviceCount(), 1);
        EXPECT_STREQ(getCameraName(0), " Sheet Cam");
        EXPECT_EQ(openCamera(1, 640, 480), -1);

        bench_->plugIn(camera(0));
        ASSERT_EQ(getDeviceCount(), 2);
        EXPECT_STREQ(getCameraName(0), " Doc Cam");
        stream(0, format, {640, 480});
        expectFramesAsSent(3);
        endStream();
    }
}

TEST_F(RealDriver, ACameraRepluggedBeforeTheHostClosedOpensAgain) {
    stream(0, kMjpegFormat, {640, 480});
    expectFramesAsSent(3);
    bench_->unplug(camera(0));
    EXPECT_EQ(endOfStream(), "the camera was unplugged");
    bench_->plugIn(camera(0));
    endStream();
    ASSERT_EQ(getDeviceCount(), 2);
    stream(0, kMjpegFormat, {640, 480});
    expectFramesAsSent(3);
}

TEST_F(RealDriver, TheOtherCameraKeepsStreamingWhileOneIsReplugged) {
    stream(1, kMjpegFormat, {640, 480});
    expectFramesAsSent(3);
    bench_->unplug(camera(0));
    expectFramesAsSent(3);
    bench_->plugIn(camera(0));
    expectFramesAsSent(3);
}

} // namespace
} // namespace doccam::vm
