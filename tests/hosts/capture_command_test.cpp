#include "host_program.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <filesystem>
#include <fstream>
#include <thread>

namespace {

using namespace doccam::test;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Capture : public HostProgramTest {
  protected:
    cv::Mat picture(const std::string& name) const {
        return cv::imread(file(name), cv::IMREAD_UNCHANGED);
    }
};

TEST_F(Capture, WritesAStillForEachFileAndNothingElse) {
    const Outcome outcome = runWith(camera(), "capture a.jpg b.png c.pdf --json");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_THAT(outcome.err, IsEmpty());
    EXPECT_THAT(files(), ElementsAre("a.jpg", "b.png", "c.pdf"));
    EXPECT_EQ(picture("a.jpg").size(), cv::Size(1280, 960));
    EXPECT_EQ(picture("b.png").size(), cv::Size(1280, 960));
    const auto written = outcome.json();
    EXPECT_EQ(written[0]["file"], "a.jpg");
    EXPECT_EQ(written[1]["width"], 1280);
    EXPECT_GT(written[2]["bytes"], 1000);
}

TEST_F(Capture, TakesTheChosenFormatSizeAndTurn) {
    ASSERT_EQ(runWith(camera(), "capture --format yuyv --rotate 90 a.png").status, kDone);
    EXPECT_EQ(picture("a.png").size(), cv::Size(480, 640));
}

TEST_F(Capture, TakesTheLargestSizeOfAnyFormat) {
    const auto sizes = [](const std::string& mjpeg, const std::string& yuyv) {
        return R"({"intervalMs": 0, "formats": [{"fourcc": "MJPG", "sizes": [)" + mjpeg +
               R"(]}, {"fourcc": "YUYV", "sizes": [)" + yuyv + "]}]}";
    };
    ASSERT_EQ(
        runWith(sizes("[640, 480], [800, 600]", "[640, 480], [1280, 960]"), "capture a.png").status,
        kDone);
    EXPECT_EQ(picture("a.png").size(), cv::Size(1280, 960));
    ASSERT_EQ(runWith(sizes("[640, 480]", "[1280, 960]"), "capture --size 1280x960 c.png").status,
              kDone);
    EXPECT_EQ(picture("c.png").size(), cv::Size(1280, 960));
    // With a look the frame is kept as the camera sent it: a JPEG of MJPEG, a PNG of YUYV.
    const Outcome equal =
        runWith(sizes("[1280, 960], [640, 480]", "[1280, 960]"), "capture d.png --verbose");
    EXPECT_THAT(equal.err, HasSubstr("pix.pixelformat:\tMJPG"));
}

TEST_F(Capture, CutsOutTheSheetInGreyAndCleansIt) {
    ASSERT_EQ(
        runWith(camera(), "capture --crop --colour grey --clean-edges --clean-background a.png")
            .status,
        kDone);
    const cv::Mat page = picture("a.png");
    // The sheet is 0.8 of the picture's height, and its border eight pixels wide.
    EXPECT_NEAR(page.rows, 0.8 * 960 + 16, 8);
    EXPECT_NEAR(page.cols, 0.8 * 960 * 210 / 297 + 16, 8);
    cv::Mat grey = page;
    if (page.channels() == 3) {
        cv::cvtColor(page, grey, cv::COLOR_BGR2GRAY);
    }
    EXPECT_GT(cv::mean(grey)[0], 200);
}

TEST_F(Capture, TurnsTheSheetThatItCutsOut) {
    ASSERT_EQ(runWith(camera(), "capture --crop --rotate 90 a.png").status, kDone);
    const cv::Mat page = picture("a.png");
    EXPECT_NEAR(page.cols, 0.8 * 960 + 16, 8);
    EXPECT_NEAR(page.rows, 0.8 * 960 * 210 / 297 + 16, 8);
}

TEST_F(Capture, ReplacesAFileOnlyWhenForced) {
    std::ofstream(file("a.jpg")) << "mine";
    const Outcome refused = runWith(camera(), "capture b.jpg a.jpg");
    EXPECT_EQ(refused.status, kFileFailed);
    EXPECT_THAT(refused.err, isOneSentence());
    EXPECT_THAT(refused.err, HasSubstr("--force"));
    EXPECT_THAT(files(), ElementsAre("a.jpg"));
    EXPECT_TRUE(picture("a.jpg").empty());
    EXPECT_EQ(runWith(camera(), "capture a.jpg --force").status, kDone);
    EXPECT_EQ(picture("a.jpg").size(), cv::Size(1280, 960));
}

TEST_F(Capture, RefusesNamesThatCannotBeWritten) {
    EXPECT_EQ(runWith(camera(), "capture a.xyz").status, kUsage);
    EXPECT_EQ(runWith(camera(), "capture a.jpg ./a.jpg").status, kUsage);
    EXPECT_EQ(runWith(camera(), "capture missing/a.jpg").status, kFileFailed);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Capture, NamesTheSizesWhenTheWantedOneIsNotOffered) {
    const Outcome outcome = runWith(camera(), "capture --size 320x240 a.jpg");
    EXPECT_EQ(outcome.status, kUsage);
    EXPECT_THAT(outcome.err, HasSubstr("choose one of 1280x960 in mjpeg, 640x480 in yuyv"));
}

TEST_F(Capture, FindsNoSheetWhenOnlyACornerIsVisible) {
    // Only a corner of the sheet is in the picture, too small to be one.
    const Outcome outcome =
        runWith(camera(R"("scene": {"sheetHeight": 0.02, "noise": 0})"), "capture --crop a.jpg");
    EXPECT_EQ(outcome.status, kNothingFound);
    EXPECT_THAT(outcome.err, isOneSentence());
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Capture, NeedsACamera) {
    EXPECT_EQ(runWith("", "capture a.jpg").status, kNoCamera);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Capture, SaysWhyTheCameraDoesNotOpen) {
    const Outcome outcome = runWith(
        camera(R"("faults": [{"fault": "call", "request": "VIDIOC_STREAMON", "errno": "ENOSPC"}])"),
        "capture a.jpg");
    EXPECT_EQ(outcome.status, kCameraFailed);
    EXPECT_THAT(outcome.err, isOneSentence());
    EXPECT_THAT(outcome.err, HasSubstr("smaller --size"));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Capture, SurvivesAnUnplugAndLeavesNoFile) {
    const Outcome outcome = runWith(camera(R"("faults": [{"fault": "unplug", "at": 2}])"),
                                    "capture --crop a.jpg b.jpg c.jpg d.jpg");
    EXPECT_EQ(outcome.status, kCameraFailed);
    EXPECT_THAT(outcome.err, isOneSentence());
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Capture, ReportsFinishedStillsWhenTheCameraIsUnplugged) {
    std::vector<std::string> words{"capture", "--json", "a.jpg"};
    for (int still = 0; still < 200; ++still) {
        words.push_back("still" + std::to_string(still) + ".jpg");
    }
    RunningProgram program = start(camera(), words);
    while (!std::filesystem::exists(file("a.jpg"))) {
        std::this_thread::yield();
    }
    unplug();
    EXPECT_EQ(program.finish(), kCameraFailed);
    const auto written = nlohmann::json::parse(printed());
    EXPECT_EQ(written.size(), files().size());
    EXPECT_EQ(written[0]["file"], "a.jpg");
}

TEST_F(Capture, SaysThatTheCameraIsSilent) {
    const Outcome outcome =
        runWith(camera(R"("faults": [{"fault": "stall", "at": 2}])"), "capture a.jpg");
    EXPECT_EQ(outcome.status, kCameraFailed);
    EXPECT_THAT(outcome.err, AllOf(isOneSentence(), HasSubstr("sends no frames")));
    EXPECT_THAT(files(), IsEmpty());
}

// Slower than any camera, as on an overloaded machine. The library itself waits four seconds for
// a still.
TEST_F(Capture, WaitsForAStillAsLongAsFramesCome) {
    const Outcome outcome =
        runWith(R"({"intervalMs": 11000, "formats": [{"fourcc": "YUYV", "sizes": [[640, 480]]}]})",
                "capture a.png");
    EXPECT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_EQ(picture("a.png").size(), cv::Size(640, 480));
}

TEST_F(Capture, SurvivesFramesThatCannotBeDecoded) {
    EXPECT_EQ(
        runWith(camera(R"("faults": [{"fault": "corrupt", "at": 2}])"), "capture a.jpg").status,
        kDone);
}

TEST_F(Capture, MakesAPageWithALook) {
    for (const std::string arguments : {"--crop --look paper", "--crop=sheet"}) {
        const Outcome outcome = runWith(camera(), "capture a.jpg --force --json " + arguments);
        ASSERT_EQ(outcome.status, kDone) << outcome.err;
        EXPECT_EQ(outcome.json()[0]["sheet"].size(), 4U);
        EXPECT_LT(outcome.json()[0]["width"], 1280);
    }
    const Outcome whole = runWith(camera(), "capture b.png c.pdf --look photo --colour bw --json");
    ASSERT_EQ(whole.status, kDone) << whole.err;
    EXPECT_EQ(whole.json()[0]["sheet"], nullptr);
    EXPECT_EQ(whole.json()[0]["width"], 1280);
    EXPECT_EQ(runWith(camera(), "capture d.jpg --look photo --colour bw").status, kUsage);
    EXPECT_EQ(runWith(camera(), "capture d.jpg --look photo --clean-edges").status, kUsage);
}

TEST_F(Capture, WithALookFailsWithoutASheet) {
    const Outcome outcome =
        runWith(camera(R"("scene": {"centreX": 9})"), "capture a.jpg --crop --look paper");
    EXPECT_EQ(outcome.status, kNothingFound);
    EXPECT_THAT(outcome.err, isOneSentence());
}

} // namespace
