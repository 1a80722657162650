// The cleaning operations against their plain steps, on many pictures of many widths.
#include "cleaning_pictures.h"
#include "docimage/black_edge.h"
#include "literal_cleaning.h"
#include "support/same_picture.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/core/core_c.h>

#include <cstdint>
#include <functional>

namespace {

using namespace doccam::test;

constexpr int kScenes = 24;

class Cleaning : public testing::TestWithParam<int> {
  protected:
    // Scenes whose width leaves the parameter's remainder when divided by four.
    static void forEachScene(const std::function<void(const cv::Mat&)>& check) {
        for (int i = 0; i < kScenes; ++i) {
            const cv::Size size(236 + 4 * (i % 9) + GetParam(), 190 + 7 * (i % 11));
            SCOPED_TRACE(testing::Message() << "scene " << i << ' ' << size);
            check(drawnScene(size, static_cast<std::uint64_t>(1000 * GetParam() + i + 1)));
        }
    }
};

cv::Mat filledMask(cv::Mat picture) {
    IplImage header = cvIplImage(picture);
    IplImage* image = FillBlackEdgeToWhite(&header);
    cv::Mat mask = cv::cvarrToMat(image).clone();
    cvReleaseImage(&image);
    return mask;
}

using Operation = void (*)(cv::Mat);
using Steps = void (*)(cv::Mat&);

void expectSame(const cv::Mat& picture, Operation operation, Steps steps) {
    const cv::Mat actual = picture.clone();
    cv::Mat expected = picture.clone();
    operation(actual);
    steps(expected);
    EXPECT_TRUE(isSamePicture(actual, expected));
}

void expectSameMask(const cv::Mat& picture) {
    EXPECT_TRUE(isSamePicture(filledMask(picture), literal::blackEdgeMask(picture)));
}

void expectSameOfAll(const cv::Mat& picture) {
    expectSame(picture, FN_DeleteBlackEdge, literal::deleteBlackEdge);
    expectSame(picture, doccam::whitenMarginsByBrightness, literal::deleteBlackEdgeByBrightness);
    expectSame(picture, FN_DeleteBackcolor, literal::deleteBackcolor);
    expectSameMask(picture);
}

TEST_P(Cleaning, DeletesBlackEdgesAsThePlainStepsDo) {
    forEachScene([](const cv::Mat& scene) {
        expectSame(scene, FN_DeleteBlackEdge, literal::deleteBlackEdge);
    });
}

TEST_P(Cleaning, DeletesBlackEdgesByBrightnessAsThePlainStepsDo) {
    forEachScene([](const cv::Mat& scene) {
        expectSame(scene, doccam::whitenMarginsByBrightness, literal::deleteBlackEdgeByBrightness);
    });
}

TEST_P(Cleaning, MasksBlackEdgesAsThePlainStepsDo) {
    forEachScene(expectSameMask);
}

TEST_P(Cleaning, DeletesTheBackgroundAsThePlainStepsDo) {
    forEachScene([](const cv::Mat& scene) {
        expectSame(scene, FN_DeleteBackcolor, literal::deleteBackcolor);
    });
}

TEST_P(Cleaning, TreatsNoiseAsThePlainStepsDo) {
    expectSameOfAll(noise({240 + GetParam(), 200}, 5));
}

INSTANTIATE_TEST_SUITE_P(EachRemainderOfTheWidth, Cleaning, testing::Range(0, 4));

TEST(CleaningOfTinyPictures, EqualsThePlainSteps) {
    for (int height = 1; height <= 6; ++height) {
        for (int width = 1; width <= 9; ++width) {
            SCOPED_TRACE(testing::Message() << width << 'x' << height);
            expectSameOfAll(
                noise({width, height}, static_cast<std::uint64_t>(height * 10 + width)));
        }
    }
}

// Otherwise the comparisons above would hold for operations that paint everything white.
TEST(CleaningScenes, KeepASheetMoreOftenThanNot) {
    int kept = 0;
    for (int i = 0; i < kScenes; ++i) {
        const cv::Mat scene = drawnScene({240, 220}, static_cast<std::uint64_t>(i + 1));
        FN_DeleteBlackEdge(scene);
        kept += cv::mean(scene)[0] < 254.0 ? 1 : 0;
    }
    EXPECT_GT(kept, kScenes / 2);
}

} // namespace
