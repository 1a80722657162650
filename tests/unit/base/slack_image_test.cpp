#include "base/slack_image.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <algorithm>
#include <cstring>

namespace doccam::test {
namespace {

// Released after main, when other static objects may be gone.
cv::Mat releasedLast;

unsigned char* slackOf(cv::Mat& image) {
    return image.data + image.total() * image.elemSize();
}

TEST(SlackImage, IsAPackedColourImage) {
    const cv::Mat image = makeSlackImage(7, 5);
    EXPECT_EQ(image.size(), cv::Size(5, 7));
    EXPECT_EQ(image.type(), CV_8UC3);
    EXPECT_TRUE(image.isContinuous());
    EXPECT_FALSE(image.isSubmatrix());
    EXPECT_EQ(image.step[0], 15U);
    EXPECT_EQ(image.dataend, image.data + std::size_t{7} * 5 * 3);
}

TEST(SlackImage, HasRoomForAPairOfPixelsPastItsLast) {
    cv::Mat image = makeSlackImage(7, 5);
    image.setTo(9);
    std::fill_n(slackOf(image), kImageSlack, static_cast<unsigned char>(200));
    EXPECT_EQ(std::count(slackOf(image), slackOf(image) + kImageSlack, 200), kImageSlack);
    EXPECT_EQ(cv::countNonZero(image.reshape(1) == 9), 7 * 5 * 3);
}

TEST(SlackImage, HidesTheRoomFromBorderPadding) {
    cv::Mat image = makeSlackImage(3, 4);
    image.setTo(9);
    std::fill_n(slackOf(image), kImageSlack, static_cast<unsigned char>(200));
    cv::Mat bordered;
    cv::copyMakeBorder(image, bordered, 1, 1, 1, 1, cv::BORDER_CONSTANT, cv::Scalar(50, 50, 50));
    const cv::Mat channels = bordered.reshape(1);
    EXPECT_EQ(cv::countNonZero(channels == 200), 0);
    EXPECT_EQ(cv::countNonZero(channels == 9), 3 * 4 * 3);
    EXPECT_EQ(cv::countNonZero(channels == 50), (5 * 6 - 3 * 4) * 3);
}

TEST(SlackImage, LivesAsLongAsTheLastOfItsCopies) {
    cv::Mat copy;
    {
        cv::Mat image = makeSlackImage(3, 4);
        image.setTo(9);
        copy = image;
        const cv::Mat third = copy;
        EXPECT_EQ(copy.u->refcount, 3);
        EXPECT_EQ(third.data, image.data);
    }
    EXPECT_EQ(copy.u->refcount, 1);
    EXPECT_EQ(cv::countNonZero(copy.reshape(1) == 9), 3 * 4 * 3);
    copy.release();
    EXPECT_EQ(copy.u, nullptr);
}

TEST(SlackImage, BecomesAnOrdinaryImageWhenItIsAllocatedAnew) {
    cv::Mat image = makeSlackImage(3, 4);
    image.create(30, 40, CV_8UC1);
    image.setTo(1);
    EXPECT_EQ(image.size(), cv::Size(40, 30));
    EXPECT_EQ(image.clone().total(), 1200U);
}

TEST(SlackImage, KeepsItsMemoryWhenItIsCreatedAtTheSameSize) {
    cv::Mat image = makeSlackImage(3, 4);
    const unsigned char* const pixels = image.data;
    image.create(3, 4, CV_8UC3);
    EXPECT_EQ(image.data, pixels);
}

TEST(SlackImage, RefusesSizesBelowOne) {
    EXPECT_THROW(makeSlackImage(0, 4), cv::Exception);
    EXPECT_THROW(makeSlackImage(4, 0), cv::Exception);
    EXPECT_THROW(makeSlackImage(-1, 4), cv::Exception);
}

TEST(SlackImage, SurvivesTheDestructionOfStaticObjects) {
    EXPECT_EXIT(
        {
            releasedLast = makeSlackImage(30, 40);
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace doccam::test
