// Unmodified programs, started by the launcher.
#include "picture/jpeg.h"
#include "scene/scene.h"
#include "support/scratch_folder.h"
#include "virtual_camera_pictures.h"

#include <gmock/gmock.h>
#include <opencv2/imgproc.hpp>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

struct Outcome {
    int status;
    std::string text; // standard output and standard error
};

Outcome run(const std::string& command) {
    std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    std::string text;
    char chunk[4096];
    for (std::size_t n = 0; (n = std::fread(chunk, 1, sizeof chunk, pipe)) > 0;) {
        text.append(chunk, n);
    }
    const int status = pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text};
}

Outcome launch(const std::string& arguments) {
    return run(std::string(DOCCAM_VIRTUALCAM_LAUNCHER) + " " + arguments);
}

// v4l2-ctl prints a character per frame, with the rate in between after each second.
std::ptrdiff_t framesIn(const Outcome& outcome) {
    return std::count(outcome.text.begin(), outcome.text.end(), '<');
}

class VirtualCameraLauncher : public testing::Test {
  protected:
    std::string scenario(const std::string& text) {
        const std::string path = folder_.file("scenario.json");
        std::ofstream(path) << text;
        return " --scenario " + path + " ";
    }

    doccam::test::ScratchFolder folder_;
};

TEST_F(VirtualCameraLauncher, ShowsBothCamerasAndTheirFormatsToV4l2CtlAndStreams) {
    const Outcome outcome = launch("--interval 0 -- v4l2-ctl --list-devices --list-formats-ext "
                                   "--stream-mmap --stream-count=30");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(
        outcome.text,
        AllOf(HasSubstr("Doc Cam: Doc Cam (usb-0000:00:14.0-1):\n\t/dev/video0\n\t/dev/video1"),
              HasSubstr("/dev/video2\n\t/dev/video3"),
              HasSubstr("'MJPG' (Motion-JPEG, compressed)"), HasSubstr("'YUYV' (YUYV 4:2:2)"),
              HasSubstr("Size: Discrete 640x480"), HasSubstr("Size: Discrete 3264x2448")));
    EXPECT_EQ(framesIn(outcome), 30);
}

TEST_F(VirtualCameraLauncher, StreamsToV4l2CtlThroughLibv4l2) {
    const Outcome outcome =
        launch("--interval 0 -- v4l2-ctl --wrapper --stream-mmap --stream-count=5");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(framesIn(outcome), 5);
}

TEST_F(VirtualCameraLauncher, LetsFfmpegGrabBothFormats) {
    for (const std::string format : {"mjpeg", "yuyv422"}) {
        const std::string picture = folder_.file(format + ".png");
        const Outcome outcome =
            launch("--interval 0 -- ffmpeg -nostdin -v error -f v4l2 "
                   "-input_format " +
                   format + " -video_size 1280x960 -i /dev/video0 -frames:v 1 " + picture);
        EXPECT_EQ(outcome.status, 0) << outcome.text;
        const cv::Mat grabbed = doccam::virtualcam::loadPhoto(picture);
        ASSERT_EQ(grabbed.size(), cv::Size(1280, 960));
        const cv::Mat scene = doccam::virtualcam::drawScene({}, grabbed.size());
        EXPECT_GT(cv::PSNR(grabbed, scene), 25.0) << format;
    }
}

TEST_F(VirtualCameraLauncher, ShowsThePhotographItIsGiven) {
    const std::string photo = folder_.file("photo.png");
    cv::Mat picture(480, 640, CV_8UC3, cv::Scalar(40, 90, 200));
    cv::circle(picture, {320, 240}, 100, cv::Scalar(220, 220, 220), -1);
    doccam::test::writePng(photo, picture);
    const std::string grabbed = folder_.file("grabbed.png");
    const Outcome outcome = launch("--interval 0 --photo " + photo +
                                   " -- ffmpeg -nostdin -v error -f v4l2 -video_size 640x480 "
                                   "-i /dev/video2 -frames:v 1 " +
                                   grabbed);
    ASSERT_EQ(outcome.status, 0) << outcome.text;
    EXPECT_GT(cv::PSNR(doccam::virtualcam::loadPhoto(grabbed), picture), 30.0);
}

TEST_F(VirtualCameraLauncher, PlaysTheScenarioItIsGiven) {
    const Outcome outcome = launch(scenario(R"({"cameras": [{"card": "One: One", "intervalMs": 0,
                            "formats": [{"fourcc": "YUYV", "sizes": [[320, 240]]}],
                            "faults": [{"fault": "call", "request": "VIDIOC_STREAMON",
                                        "errno": "EIO"}]}]})") +
                                   "-- v4l2-ctl --list-devices --stream-mmap --stream-count=1");
    EXPECT_THAT(outcome.text, AllOf(HasSubstr("One: One"), Not(HasSubstr("/dev/video2")),
                                    ContainsRegex("STREAMON.*Input/output error")));
}

TEST_F(VirtualCameraLauncher, EndsOtherProgramsWhenTheCameraIsUnplugged) {
    const Outcome outcome = launch(scenario(R"({"cameras": [{"intervalMs": 0,
                            "faults": [{"fault": "unplug", "at": 4}]}]})") +
                                   "-- v4l2-ctl --stream-mmap --stream-count=30");
    EXPECT_EQ(framesIn(outcome), 3);
}

TEST_F(VirtualCameraLauncher, PassesTheExitStatusOn) {
    EXPECT_EQ(launch("-- sh -c 'exit 42'").status, 42);
    EXPECT_EQ(launch("-- sh -c 'kill -TERM $$'").status, 128 + 15);
    EXPECT_EQ(launch("-- /nonexistent/program").status, 127);
}

TEST_F(VirtualCameraLauncher, PassesSignalsOn) {
    EXPECT_EQ(
        launch("-- sh -c 'trap \"exit 7\" TERM; kill -TERM $PPID; while :; do :; done'").status, 7);
}

TEST_F(VirtualCameraLauncher, RemovesTheDeviceTreeAtTheEnd) {
    const Outcome outcome = launch("-- sh -c 'echo $UMOCKDEV_DIR; ls -d $UMOCKDEV_DIR/sys'");
    ASSERT_EQ(outcome.status, 0);
    const std::string folder = outcome.text.substr(0, outcome.text.find('\n'));
    EXPECT_NE(run("ls -d " + folder).status, 0);
}

TEST_F(VirtualCameraLauncher, RefusesWhatItCannotUse) {
    EXPECT_EQ(launch("").status, 2);
    EXPECT_EQ(launch("--interval soon -- true").status, 2);
    EXPECT_EQ(launch("--sheet-frames -1 -- true").status, 2);
    EXPECT_EQ(launch("--scenario /nonexistent.json -- true").status, 2);
    EXPECT_EQ(launch("--photo /nonexistent.jpg -- true").status, 2);
}

TEST_F(VirtualCameraLauncher, EscapesControlCharactersInMessages) {
    const std::string odd = "\"$(printf '/none/\\033[2J\\302\\233\\177')\"";
    for (const std::string& arguments :
         {"--scenario " + odd + " -- true", "--photo " + odd + " -- true", "-- " + odd}) {
        EXPECT_THAT(launch(arguments).text, HasSubstr("/none/\\x1b[2J\\xc2\\x9b\\x7f"))
            << arguments;
    }
}

} // namespace
