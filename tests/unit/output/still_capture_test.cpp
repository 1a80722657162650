// Taking a still, with the test standing in for the streaming thread.
#include "decoded.h"
#include "environment.h"
#include "state/library_state.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <filesystem>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

namespace fs = std::filesystem;
using doccam::state;
using namespace doccam::test;

constexpr long kPause = 50'000;
constexpr std::size_t kWaitsForStill = 79;
constexpr std::size_t kWaitsForFile = 3;

class StillCapture : public testing::Test {
  protected:
    void SetUp() override { state().session.bKeep = true; }

    void TearDown() override {
        state().session.bKeep = false;
        state().session.isShootPhoto = false;
        state().session.isInsert1000M = false;
        state().session.imgSavePath.store("");
        SetRotate(0);
    }

    static std::string requested() { return state().session.imgSavePath.load(); }

    ScratchFolder scratch_;
    std::string target_ = scratch_.file("still.png");
    cv::Mat frame_ = cv::Mat(24, 32, CV_8UC3, cv::Scalar(255, 0, 0)); // red, red first
};

TEST_F(StillCapture, ReturnsMinusOneAndChangesNothingWithoutACamera) {
    state().session.bKeep = false;
    state().session.imgSavePath.store("before");
    writeText(target_, "old");
    PrintedText printed;
    EXPECT_EQ(captureImage(target_.c_str()), -1);
    EXPECT_EQ(captureImage(nullptr), -1);
    EXPECT_EQ(printed.take(), "");
    EXPECT_EQ(requested(), "before");
    EXPECT_FALSE(state().session.isShootPhoto);
    EXPECT_EQ(readText(target_), "old");
}

TEST_F(StillCapture, RefusesAPathThatDoesNotFit) {
    state().session.imgSavePath.store("before");
    const Pauses pauses;
    const std::string folder = scratch_.path().string() + "/" + std::string(200, 'd');
    fs::create_directory(folder);
    const std::string tooLong = folder + "/" + std::string(254 - folder.size(), 'n');
    ASSERT_EQ(tooLong.size(), 255U);
    writeText(tooLong, "old");
    for (const char* path : {tooLong.c_str(), static_cast<const char*>(nullptr)}) {
        PrintedText printed;
        EXPECT_EQ(captureImage(path), -1);
        EXPECT_EQ(printed.take(), "captureImage->path missing or too long\n");
    }
    EXPECT_EQ(readText(tooLong), "old");
    EXPECT_EQ(requested(), "before");
    EXPECT_FALSE(state().session.isShootPhoto);
    EXPECT_TRUE(pauses.lengths.empty());
}

TEST_F(StillCapture, AcceptsTheLongestPath) {
    const Pauses pauses;
    const std::string longest(254, 'n');
    EXPECT_EQ(captureImage(longest.c_str()), 0);
    EXPECT_EQ(requested(), longest);
}

TEST_F(StillCapture, PublishesThePathBeforeTheRequestAndDeletesTheOldFile) {
    writeText(target_, "old");
    const Pauses pauses([this](int before) {
        if (before == 0) {
            EXPECT_TRUE(state().session.isShootPhoto);
            EXPECT_EQ(requested(), target_);
            EXPECT_FALSE(fs::exists(target_));
        }
    });
    EXPECT_EQ(captureImage(target_.c_str()), 0);
    EXPECT_FALSE(fs::exists(target_));
}

TEST_F(StillCapture, WaitsAtMostSeventyNineTimesAndKeepsTheRequest) {
    const Pauses pauses;
    EXPECT_EQ(captureImage(target_.c_str()), 0);
    EXPECT_EQ(pauses.lengths, std::vector<long>(kWaitsForStill, kPause));
    EXPECT_TRUE(state().session.isShootPhoto);
}

TEST_F(StillCapture, WaitsThreeTimesMoreWhenTheFileIsThere) {
    const Pauses pauses([this](int before) {
        if (before == 4) {
            writeText(target_, "still");
            state().session.isShootPhoto = false;
        }
    });
    EXPECT_EQ(captureImage(target_.c_str()), 0);
    EXPECT_EQ(pauses.lengths, std::vector<long>(5 + kWaitsForFile, kPause));
}

TEST_F(StillCapture, StopsWaitingWhenTheFileGoesAway) {
    const Pauses pauses([this](int before) {
        if (before == 0) {
            writeText(target_, "still");
            state().session.isShootPhoto = false;
        } else if (before == 1) {
            fs::remove(target_);
        }
    });
    EXPECT_EQ(captureImage(target_.c_str()), 0);
    EXPECT_EQ(pauses.lengths.size(), 2U);
}

TEST_F(StillCapture, ReturnsAtOnceWhenNoFileWasWritten) {
    const Pauses pauses([](int) { state().session.isShootPhoto = false; });
    EXPECT_EQ(captureImage(target_.c_str()), 0);
    EXPECT_EQ(pauses.lengths.size(), 1U);
}

TEST_F(StillCapture, WaitsForBothWhenAFileAppearsWithoutCompletion) {
    const Pauses pauses([this](int before) {
        if (before == 10) {
            writeText(target_, "somebody else's");
        }
    });
    EXPECT_EQ(captureImage(target_.c_str()), 0);
    EXPECT_EQ(pauses.lengths.size(), kWaitsForStill + kWaitsForFile);
}

TEST_F(StillCapture, IsTakenByTheStreamingThread) {
    std::binary_semaphore taken(0);
    std::thread stream([&] {
        while (!state().session.isShootPhoto.load(std::memory_order_acquire)) {
            std::this_thread::yield();
        }
        auto path = state().session.imgSavePath.load();
        capture(path.data(), 0, 0, frame_);
        state().session.isShootPhoto.store(false, std::memory_order_release);
        taken.release();
    });
    PrintedText printed;
    const Pauses pauses([&](int before) {
        if (before == 0) {
            taken.acquire();
        }
    });
    EXPECT_EQ(captureImage(target_.c_str()), 0);
    stream.join();
    printed.take();
    EXPECT_EQ(readPng(target_).at(0, 0), (Pixel{255, 0, 0}));
}

TEST_F(StillCapture, SavesTheWholeFrameAndPrintsItsProgress) {
    for (const int cropMode : {0, 2, -1}) {
        PrintedText printed;
        EXPECT_EQ(capture(target_.data(), 7, cropMode, frame_), 0);
        EXPECT_EQ(printed.take(), "capture->path:" + target_ +
                                      "\ncapture->01\ncapture->02\ncapture->03\ncapture->04\n");
        const Decoded still = readPng(target_);
        EXPECT_EQ(still.width, 32);
        EXPECT_EQ(still.height, 24);
        EXPECT_EQ(still.at(31, 23), (Pixel{255, 0, 0}));
        fs::remove(target_);
    }
}

TEST_F(StillCapture, LeavesTheFramesPixelsAlone) {
    cv::RNG random(1);
    random.fill(frame_, cv::RNG::UNIFORM, 0, 256);
    const cv::Mat before = frame_.clone();
    const PrintedText printed;
    for (const bool enlarge : {false, true}) {
        state().session.isInsert1000M = enlarge;
        for (const int mode : {0, 1, 2, 3}) {
            SetColorMode(mode);
            capture(target_.data(), 0, 0, frame_);
            EXPECT_EQ(cv::norm(frame_, before, cv::NORM_INF), 0) << mode;
        }
    }
    SetColorMode(0);
}

TEST_F(StillCapture, EnlargesTheFrameOfTheLargestSize) {
    state().session.isInsert1000M = true;
    frame_.colRange(0, 16).setTo(cv::Scalar(0, 0, 0));
    for (const int turns : {0, 1, 2, 3, 4, -1}) {
        SetRotate(turns);
        PrintedText printed;
        EXPECT_EQ(capture(target_.data(), 0, 0, frame_), 0);
        EXPECT_EQ(printed.take(),
                  "capture->path:" + target_ + "\ncapture->01\ncapture->02\ncapture->04\n");
        const Decoded still = readPng(target_);
        const bool upright = turns == 1 || turns == 3;
        EXPECT_EQ(still.width, upright ? 2856 : 3672);
        EXPECT_EQ(still.height, upright ? 3672 : 2856);
        EXPECT_EQ(still.at(0, 0), (Pixel{0, 0, 0}));
        EXPECT_EQ(still.at(still.width - 1, still.height - 1), (Pixel{255, 0, 0}));
        // Half way between black and red: neighbouring pixels are blended.
        const int middle = still.at(still.width / 2, 0)[0];
        EXPECT_GT(middle, 100);
        EXPECT_LT(middle, 155);
    }
}

TEST_F(StillCapture, IgnoresTheRemovalSwitchesOtherValues) {
    PrintedText printed;
    capture(target_.data(), 0, 0, frame_);
    const std::string expected = readText(target_);
    SetDelBlackedge(2);
    SetDelBackColor(-1);
    capture(target_.data(), 0, 0, frame_);
    SetDelBlackedge(0);
    SetDelBackColor(0);
    EXPECT_EQ(readText(target_), expected);
}

TEST_F(StillCapture, LetsExceptionsThrough) {
    const PrintedText printed;
    EXPECT_THROW(capture(target_.data(), 0, 0, cv::Mat()), cv::Exception);
    std::string brief = "ab";
    EXPECT_THROW(capture(brief.data(), 0, 0, frame_), std::out_of_range);
    EXPECT_TRUE(fs::is_empty(scratch_.path()));
}

} // namespace
