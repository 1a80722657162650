// The page engine as hosts in C use it: arguments, limits, results.
#include "drawn_sheets.h"

#include <doccam/page.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

namespace doccam::test {
namespace {

DoccamImage imageOf(const cv::Mat& picture, int pixels) {
    return {picture.data, picture.cols, picture.rows, picture.step, pixels};
}

class PageInterface : public testing::Test {
  protected:
    cv::Mat picture_ =
        drawnSheet({1200, 900}, seenCorners({.tilt = 12, .pan = 9, .turn = 5}, 0.707),
                   {235, 238, 240}, {40, 60, 80});
    DoccamImage image_ = imageOf(picture_, DOCCAM_PIXELS_BGR);
    DoccamSheet sheet_{};
    DoccamPage* page_ = nullptr;
    int width_ = 0;
    int height_ = 0;
};

TEST_F(PageInterface, MakesAPageOfAPicture) {
    ASSERT_EQ(doccam_find_sheets(&image_, nullptr, &sheet_, 1), 1);
    EXPECT_EQ(sheet_.cut, 0);
    DoccamSheet again{};
    ASSERT_EQ(doccam_find_sheets(&image_, &sheet_, &again, 1), 1);
    EXPECT_NEAR(again.corners[2][0], sheet_.corners[2][0], 0.5);
    ASSERT_EQ(doccam_rectify(&image_, &sheet_, &page_), 0);
    EXPECT_EQ(page_->pixels, DOCCAM_PIXELS_BGR);
    EXPECT_NEAR(static_cast<double>(page_->width) / page_->height, 0.707, 0.01);
    ASSERT_EQ(doccam_rectified_size(&image_, &sheet_, &width_, &height_), 0);
    EXPECT_EQ(cv::Size(width_, height_), cv::Size(page_->width, page_->height));
    const DoccamImage page{page_->data, page_->width, page_->height, page_->stride, page_->pixels};
    for (const int colour : {DOCCAM_COLOUR, DOCCAM_COLOUR_GREY, DOCCAM_COLOUR_BLACK_WHITE}) {
        for (const int look : {DOCCAM_LOOK_PHOTO, DOCCAM_LOOK_PAPER}) {
            DoccamPage* result = nullptr;
            ASSERT_EQ(doccam_look(&page, look, colour, &result), 0);
            EXPECT_EQ(result->width, page_->width);
            EXPECT_EQ(result->height, page_->height);
            doccam_page_free(result);
        }
    }
    doccam_page_free(page_);
}

TEST_F(PageInterface, KeepsTheOrderOfChannels) {
    cv::Mat swapped;
    cv::Mat channels[3];
    cv::split(picture_, channels);
    std::swap(channels[0], channels[2]);
    cv::merge(channels, 3, swapped);
    const DoccamImage redFirst = imageOf(swapped, DOCCAM_PIXELS_RGB);
    const cv::Mat before = swapped.clone();
    ASSERT_EQ(doccam_find_sheets(&redFirst, nullptr, &sheet_, 1), 1);
    ASSERT_EQ(doccam_rectify(&redFirst, &sheet_, &page_), 0);
    const unsigned char* const middle = page_->data +
                                        page_->stride * static_cast<unsigned>(page_->height / 2) +
                                        std::ptrdiff_t{page_->width / 2} * 3;
    EXPECT_EQ(middle[0], 240);
    EXPECT_EQ(middle[2], 235);
    EXPECT_EQ(cv::norm(swapped, before, cv::NORM_INF), 0);
    doccam_page_free(page_);
}

TEST_F(PageInterface, RefusesImagesBeyondItsLimits) {
    for (const DoccamImage& image :
         {DoccamImage{nullptr, 10, 10, 30, DOCCAM_PIXELS_BGR},
          DoccamImage{picture_.data, 0, 10, 30, DOCCAM_PIXELS_BGR},
          DoccamImage{picture_.data, 10, -1, 30, DOCCAM_PIXELS_BGR},
          DoccamImage{picture_.data, 10, 10, 29, DOCCAM_PIXELS_BGR},
          DoccamImage{picture_.data, 32768, 1, 98304, DOCCAM_PIXELS_BGR},
          DoccamImage{picture_.data, 32767, 32767, 98301, DOCCAM_PIXELS_BGR},
          DoccamImage{picture_.data, 10, 10, 30, DOCCAM_PIXELS_BITS},
          DoccamImage{picture_.data, 10, 10, 30, 2}}) {
        EXPECT_EQ(doccam_find_sheets(&image, nullptr, &sheet_, 1), DOCCAM_PAGE_BAD_IMAGE);
        EXPECT_EQ(doccam_rectify(&image, &sheet_, &page_), DOCCAM_PAGE_BAD_IMAGE);
        EXPECT_EQ(doccam_rectified_size(&image, &sheet_, &width_, &height_), DOCCAM_PAGE_BAD_IMAGE);
        EXPECT_EQ(doccam_look(&image, 0, 0, &page_), DOCCAM_PAGE_BAD_IMAGE);
        EXPECT_EQ(page_, nullptr);
    }
}

TEST_F(PageInterface, RefusesMissingAndUnknownArguments) {
    EXPECT_EQ(doccam_find_sheets(nullptr, nullptr, &sheet_, 1), DOCCAM_PAGE_BAD_ARGUMENT);
    EXPECT_EQ(doccam_find_sheets(&image_, nullptr, nullptr, 1), DOCCAM_PAGE_BAD_ARGUMENT);
    EXPECT_EQ(doccam_find_sheets(&image_, nullptr, &sheet_, 0), DOCCAM_PAGE_BAD_ARGUMENT);
    EXPECT_EQ(doccam_rectify(&image_, nullptr, &page_), DOCCAM_PAGE_BAD_ARGUMENT);
    EXPECT_EQ(doccam_rectified_size(&image_, nullptr, &width_, &height_), DOCCAM_PAGE_BAD_ARGUMENT);
    EXPECT_EQ(doccam_rectified_size(&image_, &sheet_, nullptr, &height_), DOCCAM_PAGE_BAD_ARGUMENT);
    EXPECT_EQ(doccam_rectify(&image_, &sheet_, nullptr), DOCCAM_PAGE_BAD_ARGUMENT);
    EXPECT_EQ(doccam_look(&image_, 2, 0, &page_), DOCCAM_PAGE_BAD_ARGUMENT);
    EXPECT_EQ(doccam_look(&image_, 0, 3, &page_), DOCCAM_PAGE_BAD_ARGUMENT);
    EXPECT_EQ(doccam_look(&image_, -1, 0, &page_), DOCCAM_PAGE_BAD_ARGUMENT);
    doccam_page_free(nullptr);
}

TEST_F(PageInterface, RefusesSheetsThatAreNone) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const DoccamSheet& sheet :
         {DoccamSheet{}, DoccamSheet{{{0, 0}, {100, 0}, {0, 100}, {100, 100}}, 1, 0},
          DoccamSheet{{{0, 0}, {0, 100}, {100, 100}, {100, 0}}, 1, 0},
          DoccamSheet{{{0, 0}, {100, 0}, {100, 100}, {0, 0}}, 1, 0},
          DoccamSheet{{{-65534, -65534}, {65534, -65534}, {65534, 65534}, {-65534, 65534}}, 1, 0},
          DoccamSheet{{{0, 0}, {1e12, 0}, {1e12, 100}, {0, 100}}, 1, 0},
          DoccamSheet{{{nan, 0}, {100, 0}, {100, 100}, {0, 100}}, 1, 0}}) {
        EXPECT_EQ(doccam_rectify(&image_, &sheet, &page_), DOCCAM_PAGE_BAD_SHEET);
        EXPECT_EQ(doccam_rectified_size(&image_, &sheet, &width_, &height_), DOCCAM_PAGE_BAD_SHEET);
        EXPECT_GE(doccam_find_sheets(&image_, &sheet, &sheet_, 1), 0);
    }
}

TEST_F(PageInterface, PacksBlackAndWhiteWithTheHighestBitLeftmost) {
    cv::Mat page(64, 77, CV_8UC1, cv::Scalar(250));
    page.colRange(0, 5).setTo(20);
    const DoccamImage grey = imageOf(page, DOCCAM_PIXELS_GREY);
    ASSERT_EQ(doccam_look(&grey, DOCCAM_LOOK_PAPER, DOCCAM_COLOUR_BLACK_WHITE, &page_), 0);
    EXPECT_EQ(page_->pixels, DOCCAM_PIXELS_BITS);
    EXPECT_EQ(page_->stride, 10U);
    EXPECT_EQ(page_->data[5 * page_->stride + 4], 0xFF);
    doccam_page_free(page_);
}

// Every look and colour of an image, which must keep its size.
void expectLooks(const cv::Mat& picture) {
    const DoccamImage image =
        imageOf(picture, picture.channels() == 1 ? DOCCAM_PIXELS_GREY : DOCCAM_PIXELS_BGR);
    for (const int look : {DOCCAM_LOOK_PHOTO, DOCCAM_LOOK_PAPER}) {
        for (const int colour : {DOCCAM_COLOUR, DOCCAM_COLOUR_GREY, DOCCAM_COLOUR_BLACK_WHITE}) {
            DoccamPage* result = nullptr;
            ASSERT_EQ(doccam_look(&image, look, colour, &result), 0) << picture.size();
            EXPECT_EQ(cv::Size(result->width, result->height), picture.size());
            doccam_page_free(result);
        }
    }
}

TEST(PageInterfaceLimits, GiveLooksToPagesOfAnyShape) {
    for (const cv::Size size : {cv::Size(1, 1), cv::Size(2, 3), cv::Size(32767, 1),
                                cv::Size(1, 32767), cv::Size(5, 4001), cv::Size(64, 64)}) {
        for (const int type : {CV_8UC1, CV_8UC3}) {
            cv::Mat noise(size, type);
            cv::randu(noise, 0, 256);
            expectLooks(noise);
            for (const int level : {0, 128, 255}) {
                expectLooks(cv::Mat(size, type, cv::Scalar::all(level)));
            }
            expectLooks(cv::Mat(size, type, cv::Scalar(0, 0, 255)));
        }
    }
}

TEST(PageInterfaceLimits, RectifySheetsOfAnyShape) {
    cv::Mat picture(300, 400, CV_8UC3);
    cv::randu(picture, 0, 256);
    const DoccamImage image = imageOf(picture, DOCCAM_PIXELS_BGR);
    for (const DoccamSheet& sheet :
         {DoccamSheet{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}, 1, 0},
          DoccamSheet{{{-0.5, 10}, {399.5, 10}, {399.5, 12}, {-0.5, 12}}, 1, 0},
          DoccamSheet{{{10, 0}, {12, 0}, {300, 299}, {5, 299}}, 1, 0},
          DoccamSheet{{{-500, -500}, {900, -400}, {1000, 800}, {-600, 900}}, 1, 1},
          DoccamSheet{{{1000, 1000}, {1100, 1000}, {1100, 1100}, {1000, 1100}}, 1, 1}}) {
        DoccamPage* page = nullptr;
        ASSERT_EQ(doccam_rectify(&image, &sheet, &page), 0);
        EXPECT_GE(page->width, 1);
        EXPECT_GE(page->height, 1);
        EXPECT_GE(page->stride, static_cast<std::size_t>(page->width) * 3);
        doccam_page_free(page);
    }
}

// The caller may free the image before the page.
TEST_F(PageInterface, GivesPagesPixelsOfTheirOwn) {
    cv::Mat caller = picture_.clone();
    const DoccamImage image = imageOf(caller, DOCCAM_PIXELS_BGR);
    ASSERT_EQ(doccam_look(&image, DOCCAM_LOOK_PHOTO, DOCCAM_COLOUR, &page_), 0);
    caller.setTo(cv::Scalar::all(0));
    const cv::Mat page(page_->height, page_->width, CV_8UC3, page_->data, page_->stride);
    EXPECT_EQ(cv::norm(page, picture_, cv::NORM_INF), 0);
    doccam_page_free(page_);
}

} // namespace
} // namespace doccam::test
