// Stills taken from a live stream.
#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/photographs.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <thread>

namespace doccam::test {
namespace {

class Still : public SessionTest {
  protected:
    Still() { virtualcam::setSleepScale(1); }

    static std::vector<long> waitsOf(const std::string& path) {
        virtualcam::clearSleeps();
        EXPECT_EQ(captureImage(path.c_str()), 0);
        std::vector<long> waits;
        for (const virtualcam::Sleep& sleep : virtualcam::sleeps()) {
            if (sleep.thread == gettid()) {
                waits.push_back(sleep.microseconds);
            }
        }
        return waits;
    }

    const ScratchFolder folder_;
};

TEST_F(Still, OfTheWholeFrameIsTheFrame) {
    openSmall(kYuyvFormat);
    PrintedText printed;
    const std::string path = folder_.file("page.png");
    takeStill(path);
    EXPECT_EQ(printed.take(),
              "capture->path:" + path + "\ncapture->01\ncapture->02\ncapture->03\ncapture->04\n");
    EXPECT_EQ(cv::imread(path).size(), cv::Size(640, 480));
}

TEST_F(Still, HasTheFramesColours) {
    virtualcam::SceneSettings quiet = virtualcam::scene(earlier_);
    quiet.noise = 0; // every frame is the same
    virtualcam::setScene(earlier_, quiet);
    watchFrames();
    openSmall(kYuyvFormat);
    const std::string path = folder_.file("page.png");
    takeStill(path);
    cv::Mat saved = cv::imread(path);
    cv::cvtColor(saved, saved, cv::COLOR_BGR2RGB);
    EXPECT_EQ(cv::norm(saved, lastSeen(), cv::NORM_INF), 0);
}

TEST_F(Still, ReplacesTheFileThatWasThere) {
    openSmall(kYuyvFormat);
    const std::string path = folder_.file("page.jpg");
    std::ofstream(path) << "old";
    takeStill(path);
    EXPECT_EQ(cv::imread(path).size(), cv::Size(640, 480));
}

TEST_F(Still, WaitsThreeTimesMoreWhenTheFileIsThere) {
    openSmall(kYuyvFormat);
    const std::vector<long> waits = waitsOf(folder_.file("page.jpg"));
    ASSERT_GE(waits.size(), 3U);
    EXPECT_TRUE(std::all_of(waits.begin(), waits.end(), [](long w) { return w == 50000; }));
}

TEST_F(Still, GivesUpAfterSeventyNineWaitsWithoutAFile) {
    addFrameFault(virtualcam::FaultKind::kStall, 1);
    openSmall(kYuyvFormat);
    virtualcam::setSleepScale(0.01);
    const std::string path = folder_.file("page.jpg");
    std::ofstream(path) << "old";
    EXPECT_EQ(waitsOf(path), std::vector<long>(79, 50000));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_TRUE(state().session.isShootPhoto);

    // The request remains: the next frame serves it.
    virtualcam::resume(earlier_);
    while (state().session.isShootPhoto) {
        std::this_thread::yield();
    }
}

TEST_F(Still, IsRefusedWithoutASession) {
    EXPECT_EQ(captureImage(folder_.file("page.jpg").c_str()), -1);
    EXPECT_FALSE(state().session.isShootPhoto);
}

TEST_F(Still, OfAnEnlargedSessionHasTheEnlargedSize) {
    SetVideoFormat(kMjpegFormat);
    ASSERT_EQ(openCamera(0, 3672, 2856), 0);
    for (const auto& [angle, size] :
         {std::pair(0, cv::Size(3672, 2856)), std::pair(1, cv::Size(2856, 3672))}) {
        SetRotate(angle);
        const std::string path = folder_.file("page" + std::to_string(angle) + ".jpg");
        takeStill(path);
        EXPECT_EQ(cv::imread(path).size(), size);
    }
}

TEST_F(Still, IsThePhotographBeforeTheCamera) {
    virtualcam::CameraDescription camera = secondCamera();
    virtualcam::CameraId plugged = earlier_;
    SetVideoFormat(kMjpegFormat);
    watchFrames();
    for (const auto& [name, photograph] : photographs()) {
        SCOPED_TRACE(name);
        camera.picture = folder_.file(name + ".png");
        cv::imwrite(camera.picture, photograph);
        bed_.remove(plugged);
        plugged = bed_.add(camera);
        ASSERT_EQ(openCamera(kIndexOfEarlier, 3264, 2448), 0);
        waitForFrames(framesSeen() + 8); // by then the camera has made all its pictures
        takeStill(folder_.file("page.jpg"));
        const cv::Mat page = cv::imread(folder_.file("page.jpg"));
        cv::Mat source;
        cv::resize(photograph, source, page.size(), 0, 0, cv::INTER_AREA);
        EXPECT_EQ(page.size(), cv::Size(3264, 2448));
        EXPECT_GT(cv::PSNR(page, source), 30);
        closeCamera();
    }
}

} // namespace
} // namespace doccam::test
