// Page cleaning against its plain steps: every width, sizes shared among cores, parts of larger
// pictures, photographs.
#include "cleaning_pictures.h"
#include "docimage/clean/background.h"
#include "docimage/clean/black_edge.h"
#include "plain/black_edge.h"
#include "support/photographs.h"
#include "support/same_picture.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/core/core_c.h>
#include <opencv2/imgproc.hpp>

#include <cstdint>

namespace {

using namespace doccam::test;
namespace plain = doccam::plain;

using Operation = void (*)(cv::Mat);

void expectSame(const cv::Mat& page, Operation operation, Operation steps) {
    const cv::Mat actual = page.clone();
    const cv::Mat expected = page.clone();
    operation(actual);
    steps(expected);
    EXPECT_TRUE(isSamePicture(actual, expected));
}

cv::Mat filledMask(cv::Mat page) {
    IplImage header = cvIplImage(page);
    IplImage* image = FillBlackEdgeToWhite(&header);
    cv::Mat mask = cv::cvarrToMat(image).clone();
    cvReleaseImage(&image);
    return mask;
}

void expectPlainResults(const cv::Mat& page) {
    expectSame(page, FN_DeleteBlackEdge, plain::deleteBlackEdge);
    expectSame(page, doccam::whitenMarginsByBrightness, plain::deleteBlackEdgeByBrightness);
    expectSame(page, FN_DeleteBackcolor, plain::deleteBackcolor);
    EXPECT_TRUE(isSamePicture(doccam::marginMask(page).rows(), plain::marginMask(page).rows));
    EXPECT_TRUE(isSamePicture(filledMask(page), plain::marginMask(page).rows));
}

std::uint64_t seedOf(cv::Size size) {
    return static_cast<std::uint64_t>(1000 * size.width + size.height);
}

TEST(CleaningAPage, EqualsThePlainStepsForEveryNarrowWidth) {
    for (int width = 1; width <= 40; ++width) {
        for (const int height : {1, 2, 3, 4, 5, 6, 37}) {
            const cv::Size size(width, height);
            SCOPED_TRACE(size);
            expectPlainResults(noise(size, seedOf(size)));
        }
    }
}

constexpr int kScenes = 24;

TEST(CleaningAPage, EqualsThePlainStepsOnScenesOfEveryRemainderOfTheWidthByFour) {
    for (int remainder = 0; remainder < 4; ++remainder) {
        for (int i = 0; i < kScenes; ++i) {
            const cv::Size size(236 + 4 * (i % 9) + remainder, 190 + 7 * (i % 11));
            SCOPED_TRACE(testing::Message() << "scene " << i << ' ' << size);
            expectPlainResults(
                drawnScene(size, static_cast<std::uint64_t>(1000 * remainder + i + 1)));
        }
    }
}

// Otherwise the comparisons would also pass if everything were painted white.
TEST(CleaningAPage, KeepsTheSheetOfMostScenes) {
    int kept = 0;
    for (int i = 0; i < kScenes; ++i) {
        const cv::Mat scene = drawnScene({240, 220}, static_cast<std::uint64_t>(i + 1));
        FN_DeleteBlackEdge(scene);
        kept += cv::mean(scene)[0] < 254.0 ? 1 : 0;
    }
    EXPECT_GT(kept, kScenes / 2);
}

TEST(CleaningAPage, EqualsThePlainStepsForNarrowHighPages) {
    for (int width = 1; width <= 40; ++width) {
        const cv::Size size(width, 1200);
        SCOPED_TRACE(size);
        expectPlainResults(drawnScene(size, seedOf(size)));
    }
}

TEST(CleaningAPage, EqualsThePlainStepsOnLargeScenes) {
    for (int i = 0; i < 12; ++i) {
        const cv::Size size(900 + i, 700 + 13 * i);
        SCOPED_TRACE(size);
        expectPlainResults(drawnScene(size, seedOf(size)));
    }
}

TEST(CleaningAPage, EqualsThePlainStepsOnLargeNoise) {
    for (const cv::Size size :
         {cv::Size(240, 200), cv::Size(241, 200), cv::Size(242, 200), cv::Size(243, 200),
          cv::Size(640, 480), cv::Size(641, 480), cv::Size(642, 480), cv::Size(643, 480)}) {
        SCOPED_TRACE(size);
        expectPlainResults(noise(size, 9));
    }
}

TEST(CleaningAPage, EqualsThePlainStepsOnOneColour) {
    for (const cv::Scalar& colour : {cv::Scalar::all(0), cv::Scalar::all(30), cv::Scalar::all(31),
                                     cv::Scalar::all(255), cv::Scalar(10, 20, 200)}) {
        SCOPED_TRACE(testing::Message() << colour);
        expectPlainResults(cv::Mat(300, 403, CV_8UC3, colour));
    }
}

TEST(CleaningAPage, EqualsThePlainStepsOnPartOfALargerPicture) {
    for (const int width : {300, 301, 302, 303}) {
        const cv::Rect part(11, 7, width, 260);
        cv::Mat larger = noise({400, 300}, 2);
        drawnScene(part.size(), 4).copyTo(larger(part));
        const cv::Mat plainly = larger.clone();
        FN_DeleteBlackEdge(larger(part));
        plain::deleteBlackEdge(plainly(part));
        EXPECT_TRUE(isSamePicture(larger, plainly));
        FN_DeleteBackcolor(larger(part));
        plain::deleteBackcolor(plainly(part));
        EXPECT_TRUE(isSamePicture(larger, plainly));
    }
}

// Sharpening reads the neighbouring rows of the larger picture.
TEST(CleaningAPage, WhitensPaperOnPartOfALargerPictureAsThePlainStepsDo) {
    for (const int width : {101, 102, 103, 104}) {
        for (const int top : {0, 17}) {
            const cv::Rect part(11, top, width, 300);
            cv::Mat larger = noise({width + 40, 300 + top + (top == 0 ? 0 : 23)}, 5);
            const cv::Mat plainly = larger.clone();
            FN_DeleteBackcolor(larger(part));
            plain::deleteBackcolor(plainly(part));
            EXPECT_TRUE(isSamePicture(larger, plainly)) << part;
        }
    }
}

TEST(PaperOf, EqualsOpenCvsAdaptiveThreshold) {
    for (int i = 0; i < 60; ++i) {
        const cv::Size size(1 + i * 17 % 523, 1 + i * 29 % 431);
        SCOPED_TRACE(size);
        const cv::Mat page =
            i % 2 == 0 ? noise(size, seedOf(size)) : drawnScene(size, seedOf(size));
        cv::Mat expected;
        cv::cvtColor(page, expected, cv::COLOR_RGB2GRAY);
        cv::adaptiveThreshold(expected, expected, 255, cv::ADAPTIVE_THRESH_MEAN_C,
                              cv::THRESH_BINARY, 179, 19);
        EXPECT_TRUE(isSamePicture(doccam::paperOf(page).rows(), expected));
    }
}

TEST(CleaningAPage, EqualsThePlainStepsOnPhotographs) {
    for (const auto& [name, photograph] : doccam::test::photographs()) {
        SCOPED_TRACE(name);
        expectPlainResults(photograph);
        expectPlainResults(photograph.colRange(0, photograph.cols - 1));
    }
}

} // namespace
