// Whether the picture has come to rest, under restless light and beside a trembling hand.
#include "scan/even_light.h"
#include "scan/stillness.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <functional>

namespace {

using doccam::host::inLightOf;
using doccam::host::Stillness;
using doccam::host::Unrest;

constexpr int kCalm = Stillness::kCalmFrames;
constexpr int kLong = 200; // frames

const cv::Size kPicture(320, 240);
const cv::Mat kDesk(kPicture, CV_8UC1, cv::Scalar(40));

// A white sheet with bars as lines of text.
cv::Mat sheet(double left = 90) {
    cv::Mat picture = kDesk.clone();
    constexpr int kShift = 4;
    const auto bar = [&](double x, int y, int width, int height, int level) {
        const cv::Point from(cvRound(x * 16), y * 16);
        cv::rectangle(picture, from, from + cv::Point(width * 16, height * 16), cv::Scalar(level),
                      cv::FILLED, cv::LINE_AA, kShift);
    };
    bar(left, 30, 140, 180, 240);
    for (int y = 40; y < 200; y += 12) {
        bar(left + 10, y, 120, 5, 60);
    }
    return picture;
}

cv::Mat noisy(const cv::Mat& picture, int seed, double deviation = 2) {
    cv::RNG random(static_cast<std::uint64_t>(seed) + 1);
    cv::Mat noise(picture.size(), CV_16SC1);
    random.fill(noise, cv::RNG::NORMAL, 0, deviation);
    cv::Mat result;
    cv::add(picture, noise, result, cv::noArray(), CV_8U);
    return result;
}

// Bands across the picture that move on from frame to frame.
cv::Mat banded(const cv::Mat& picture, int frame, double part) {
    cv::Mat result = picture.clone();
    for (int y = 0; y < result.rows; ++y) {
        const double gain = 1 - part * (0.5 + 0.5 * std::sin(0.08 * y - 1.9 * frame));
        cv::Mat row = result.row(y);
        row.convertTo(row, -1, gain);
    }
    return result;
}

cv::Mat withHand(const cv::Mat& picture, int frame) {
    cv::Mat result = picture.clone();
    const int tremble = frame % 2 * 3;
    cv::ellipse(result, {320 - tremble, 200 + tremble}, {60, 20}, 0, 0, 360, cv::Scalar(150), -1);
    return result;
}

using Film = std::function<cv::Mat(int frame)>;

// The frame at which the picture has been at rest for kCalm; -1 if it never is.
int restAt(const Film& film, int frames = kLong) {
    Stillness stillness;
    for (int frame = 0; frame < frames; ++frame) {
        if (stillness.see(film(frame)) == kCalm) {
            return frame;
        }
    }
    return -1;
}

TEST(Stillness, IsReachedOnceASheetLiesStill) {
    EXPECT_EQ(restAt([](int frame) { return noisy(sheet(), frame); }), kCalm);
}

TEST(Stillness, IsReachedUnderBandsOfAFlickeringLamp) {
    for (const double part : {0.06, 0.2}) {
        EXPECT_EQ(restAt([&](int frame) { return noisy(banded(sheet(), frame, part), frame); }),
                  kCalm);
    }
}

TEST(Stillness, IsReachedUnderBandsOfAPictureThatWasTurned) {
    EXPECT_EQ(restAt([&](int frame) -> cv::Mat { return banded(sheet(), frame, 0.1).t(); }), kCalm);
}

TEST(Stillness, IsReachedWhileTheLightGoesUpAndDown) {
    EXPECT_EQ(restAt([](int frame) -> cv::Mat {
                  return noisy(sheet() * (0.85 + 0.15 * std::cos(frame)), frame);
              }),
              kCalm);
}

TEST(Stillness, IsReachedInANoisyPicture) {
    const int frame = restAt([](int number) { return noisy(sheet(), number, 10); });
    EXPECT_GE(frame, kCalm);
    EXPECT_LE(frame, 2 * kCalm);
}

TEST(Stillness, WaitsWhileTheSheetMoves) {
    EXPECT_EQ(restAt([](int frame) { return sheet(20 + frame / 5.0); }, 800), -1);
}

TEST(Stillness, WaitsWhileTheSheetCreeps) {
    EXPECT_EQ(restAt([](int frame) { return sheet(40 + frame / 8.0); }, 800), -1);
}

TEST(Stillness, WaitsWhileABlankSheetCreeps) {
    const auto blank = [](int frame) {
        cv::Mat picture = kDesk.clone();
        picture(cv::Rect(0, 30, 40 + frame / 4, 180)).setTo(240);
        return noisy(picture, frame);
    };
    EXPECT_EQ(restAt(blank, 800), -1);
}

TEST(Stillness, StartsAgainAfterAHandPassedThrough) {
    const auto film = [](int frame) { return frame == kCalm - 1 ? withHand(sheet(), 0) : sheet(); };
    EXPECT_EQ(restAt(film), 2 * kCalm);
}

TEST(Stillness, IsReachedBesideAHandThatTremblesAllAlong) {
    const int frame = restAt([](int number) { return withHand(sheet(), number); });
    EXPECT_GE(frame, kCalm);
    EXPECT_LE(frame, 4 * kCalm);
}

TEST(Stillness, IsReachedAsSoonBesideThatHandWithTheNextSheet) {
    Stillness stillness;
    for (int frame = 0; frame < kLong; ++frame) {
        stillness.see(withHand(sheet(40), frame));
    }
    for (int frame = 0; frame < 40; ++frame) {
        stillness.see(withHand(sheet(40 + 4 * frame), frame));
    }
    int frame = 0;
    while (stillness.see(withHand(sheet(60), frame)) < kCalm && frame < kLong) {
        ++frame;
    }
    EXPECT_LE(frame, 2 * kCalm);
}

Unrest unrestOf(const Film& film) {
    Stillness stillness;
    for (int frame = 0; frame < kLong; ++frame) {
        EXPECT_LT(stillness.see(film(frame)), kCalm);
    }
    return stillness.unrest();
}

TEST(Stillness, SaysThatSomethingMoves) {
    EXPECT_EQ(unrestOf([](int frame) { return sheet(20 + 3 * (frame % 50)); }), Unrest::kMoving);
}

TEST(Stillness, SaysThatTheLightFlickersInNoOrder) {
    const auto disco = [](int frame) {
        cv::Mat spots(6, 8, CV_8UC1);
        cv::RNG random(static_cast<std::uint64_t>(frame) + 1);
        random.fill(spots, cv::RNG::UNIFORM, 60, 255);
        cv::Mat light;
        cv::resize(spots, light, kPicture, 0, 0, cv::INTER_LINEAR);
        cv::Mat lit;
        cv::multiply(sheet(), light, lit, 1.0 / 255);
        return lit;
    };
    EXPECT_EQ(unrestOf(disco), Unrest::kFlickering);
}

TEST(Stillness, SaysThatItIsTooDark) {
    EXPECT_EQ(unrestOf([](int frame) { return noisy(sheet(20 + 3 * (frame % 50)) * 0.05, frame); }),
              Unrest::kDark);
}

TEST(InLightOf, ShowsAPictureInTheLightOfAnother) {
    const cv::Mat other = banded(sheet() * 0.8, 3, 0.1);
    EXPECT_LT(cv::norm(inLightOf(sheet(), other), sheet(), cv::NORM_INF), 8);
}

TEST(InLightOf, KeepsWhatHasMoved) {
    EXPECT_GT(cv::norm(inLightOf(sheet(), sheet(100)), sheet(), cv::NORM_INF), 100);
}

TEST(ShowsSomething, DistinguishesASheetFromAnEmptyDesk) {
    EXPECT_TRUE(doccam::host::showsSomething(sheet()));
    EXPECT_FALSE(doccam::host::showsSomething(noisy(kDesk, 1)));
}

TEST(IsDark, SaysWhetherPaperWouldBeSeen) {
    EXPECT_TRUE(doccam::host::isDark(sheet() * 0.05));
    EXPECT_FALSE(doccam::host::isDark(sheet()));
    EXPECT_FALSE(doccam::host::isDark(kDesk));
}

TEST(ReducedGrey, KeepsTheShapeAndWeighsRedFirst) {
    const cv::Mat red(1200, 1600, CV_8UC3, cv::Scalar(255, 0, 0));
    const cv::Mat grey = doccam::host::reducedGrey(red);
    EXPECT_EQ(grey.size(), cv::Size(320, 240));
    EXPECT_EQ(grey.type(), CV_8UC1);
    EXPECT_EQ(grey.at<std::uint8_t>(0, 0), 76);
}

} // namespace
