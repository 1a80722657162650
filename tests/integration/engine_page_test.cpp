// Live outlines and stills by the page engine, of sheets under a tilted camera.
#include "integration/session_fixture.h"
#include "page/quadrilateral.h"
#include "scene/scene.h"
#include "state/library_state.h"
#include "support/page_likeness.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <atomic>
#include <mutex>
#include <thread>

namespace doccam::test {
namespace {

const cv::Size kFrame(1280, 960);
constexpr double kA4 = 210.0 / 297;

std::atomic<int> framesDelivered{0};
std::mutex cornersMutex;
page::Corners lastCorners;

// On the streaming thread, which owns the corners.
void noteCorners(unsigned char* /*pixels*/, int /*width*/, int /*height*/) {
    {
        const std::lock_guard lock(cornersMutex);
        for (std::size_t i = 0; i < 4; ++i) {
            lastCorners[i] =
                cv::Point2d(state().sheet.CutPoint[2 * i], state().sheet.CutPoint[2 * i + 1]);
        }
    }
    framesDelivered.fetch_add(1);
    framesDelivered.notify_all();
}

class EnginePage : public SessionTest {
  protected:
    EnginePage() {
        SetCutType(1);
        SetVideoFormat(kMjpegFormat);
        EXPECT_EQ(SetPageEngine(1), 0);
        virtualcam::SceneSettings scene = virtualcam::scene(earlier_);
        scene.desk = "wood";
        scene.angle = 11;
        scene.sheetHeight = 0.7;
        scene.view.tilt = 16;
        scene.view.tiltDirection = 70;
        scene.light.gradient = 1.8;
        virtualcam::setScene(earlier_, scene);
    }

    ~EnginePage() override { SetPageEngine(0); }

    static void open() { ASSERT_EQ(openCamera(kIndexOfEarlier, kFrame.width, kFrame.height), 0); }

    cv::Mat taken(const std::string& name = "page.png") const {
        takeStill(folder_.file(name));
        return cv::imread(folder_.file(name));
    }

    page::Corners truth() const {
        const auto seen = virtualcam::sheetCorners(virtualcam::scene(earlier_), kFrame);
        page::Corners corners;
        std::copy(seen.begin(), seen.end(), corners.begin());
        return corners;
    }

    void takeSheetAway() const {
        virtualcam::SceneSettings scene = virtualcam::scene(earlier_);
        scene.centreX = 9;
        virtualcam::setScene(earlier_, scene);
    }

    const ScratchFolder folder_;
};

TEST_F(EnginePage, OfATiltedSheetIsUprightAndOfItsProportions) {
    watchFrames();
    open();
    waitForFrames(3);
    const cv::Mat flat = virtualcam::flatSheet(virtualcam::scene(earlier_));
    for (const int cleaned : {0, 1}) {
        SetDelBackColor(cleaned);
        const cv::Mat page = taken();
        ASSERT_FALSE(page.empty());
        EXPECT_NEAR(static_cast<double>(page.cols) / page.rows, kA4, 0.01 * kA4);
        const cv::Mat upright = turnedBack(page, 0);
        EXPECT_GT(likeness(upright, flat, 0), 0.8);
        EXPECT_LE(lineTilt(upright), 0.5);
    }
}

TEST_F(EnginePage, WithoutASheetIsTheWholeFrame) {
    takeSheetAway();
    watchFrames();
    open();
    waitForFrames(3);
    PrintedText printed;
    EXPECT_EQ(taken().size(), kFrame);
    EXPECT_THAT(printed.take(),
                testing::EndsWith("\ncapture->01\ncapture->02\ncapture->03\ncapture->04\n"));
}

TEST_F(EnginePage, HasItsCornersKeptWhileItIsOutlined) {
    framesDelivered = 0;
    SetDataCallback(noteCorners);
    open();
    for (int seen = framesDelivered; seen < 12; seen = framesDelivered) {
        framesDelivered.wait(seen);
    }
    closeCamera();
    const std::lock_guard lock(cornersMutex);
    EXPECT_LT(page::distanceBetween(lastCorners, truth()), 2);
    EXPECT_LT(page::distanceBetween(truth(), lastCorners), 2);
    EXPECT_GT(page::areaOf(lastCorners), 0);
}

TEST_F(EnginePage, NeverContainsTheOutlineThatTheCallbackShows) {
    watchFrames();
    open();
    waitForFrames(3);
    const cv::Mat page = taken();
    const auto green = [](const cv::Mat& image) {
        cv::Mat mask;
        cv::inRange(image, cv::Scalar(0, 250, 0), cv::Scalar(5, 255, 5), mask);
        return cv::countNonZero(mask);
    };
    EXPECT_EQ(green(page), 0);
    EXPECT_GT(green(lastSeen()), 1000);
}

TEST_F(EnginePage, IsTakenInEveryQuarterTurn) {
    watchFrames();
    open();
    const cv::Mat flat = virtualcam::flatSheet(virtualcam::scene(earlier_));
    for (const int turns : {1, 2, 3}) {
        SetRotate(turns);
        waitForFrames(framesSeen() + 2);
        EXPECT_GT(likeness(turnedBack(taken(), turns), flat, 0), 0.75) << turns;
    }
}

TEST_F(EnginePage, CanBeChosenAtAnyTimeByAnyThread) {
    watchFrames();
    open();
    std::atomic<bool> isDone{false};
    std::thread other([&] {
        for (int engine = 0; !isDone; engine = 1 - engine) {
            EXPECT_EQ(SetPageEngine(engine), 0);
            EXPECT_EQ(SetPageEngine(engine + 2), -1);
            std::this_thread::yield();
        }
    });
    for (int i = 0; i < 4; ++i) {
        EXPECT_FALSE(taken("page" + std::to_string(i) + ".jpg").empty());
        waitForFrames(framesSeen() + 3);
    }
    isDone = true;
    other.join();
}

} // namespace
} // namespace doccam::test
