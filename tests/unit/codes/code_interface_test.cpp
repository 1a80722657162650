// Reading codes as hosts in C do: arguments, limits, results.
#include "read_picture.h"
#include "unit/barcode/code_drawing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>
#include <zint.h>

#include <cmath>
#include <limits>

namespace doccam::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CodeInterface : public testing::Test {
  protected:
    cv::Mat picture_ = drawCode(qrCode("page 1"), 4);
    DoccamImage image_{picture_.data, picture_.cols, picture_.rows, picture_.step,
                       DOCCAM_PIXELS_GREY};
    DoccamCodes* codes_ = nullptr;
};

TEST_F(CodeInterface, GivesEachCodeWithItsPlace) {
    const PictureRead read = readPicture(picture_);
    ASSERT_EQ(read.codes.size(), 1U);
    EXPECT_TRUE(read.complete);
    EXPECT_EQ(read.codes[0].symbology, DOCCAM_QR);
    EXPECT_EQ(read.codes[0].text, "page 1");
    EXPECT_EQ(read.codes[0].bytes, "page 1");
    EXPECT_EQ(read.codes[0].addon, "");
    // 21 modules of 4 pixels, behind a quiet zone of 4 modules and as much again.
    const double low = 4 * 8;
    const double high = low + 4 * 21;
    EXPECT_LT(cv::norm(read.codes[0].corners[0] - cv::Point2d(low, low)), 3);
    EXPECT_LT(cv::norm(read.codes[0].corners[1] - cv::Point2d(high, low)), 3);
    EXPECT_LT(cv::norm(read.codes[0].corners[2] - cv::Point2d(high, high)), 3);
    EXPECT_LT(cv::norm(read.codes[0].corners[3] - cv::Point2d(low, high)), 3);
}

TEST_F(CodeInterface, ReadsEveryOrderOfChannels) {
    cv::Mat colour;
    cv::cvtColor(picture_, colour, cv::COLOR_GRAY2BGR);
    for (const int pixels : {DOCCAM_PIXELS_BGR, DOCCAM_PIXELS_RGB}) {
        const DoccamImage image{colour.data, colour.cols, colour.rows, colour.step, pixels};
        ASSERT_EQ(doccam_read_codes(&image, DOCCAM_QR, 0, &codes_), 1);
        EXPECT_STREQ(codes_->codes[0].text, "page 1");
        doccam_codes_free(codes_);
    }
}

TEST_F(CodeInterface, ReadsRowsThatAreNotContinuous) {
    cv::Mat wide(picture_.rows, picture_.cols + 37, CV_8UC1, cv::Scalar(255));
    const cv::Mat part = wide.colRange(37, wide.cols);
    picture_.copyTo(part);
    EXPECT_THAT(readTexts(part), ElementsAre("QR Code: page 1"));
}

TEST_F(CodeInterface, ReadsWantedSymbologiesAlone) {
    EXPECT_THAT(readTexts(picture_, DOCCAM_SYMBOLOGIES_LINEAR), IsEmpty());
    EXPECT_THAT(readTexts(picture_, DOCCAM_SYMBOLOGIES_ALL & ~DOCCAM_QR), IsEmpty());
    EXPECT_THAT(readTexts(picture_, DOCCAM_QR | DOCCAM_ITF), ElementsAre("QR Code: page 1"));
}

TEST_F(CodeInterface, RefusesMissingAndUnknownArguments) {
    const auto refused = [&](const DoccamImage* image, unsigned set, double seconds) {
        codes_ = reinterpret_cast<DoccamCodes*>(this);
        EXPECT_EQ(doccam_read_codes(image, set, seconds, &codes_), DOCCAM_CODES_BAD_ARGUMENT);
        EXPECT_EQ(codes_, nullptr);
    };
    refused(nullptr, DOCCAM_QR, 1);
    refused(&image_, 0, 1);
    refused(&image_, DOCCAM_SYMBOLOGIES_ALL + 1, 1);
    refused(&image_, DOCCAM_QR | 1U << 31, 1);
    refused(&image_, DOCCAM_QR, -1e-9);
    refused(&image_, DOCCAM_QR, std::nan(""));
    EXPECT_EQ(doccam_read_codes(&image_, DOCCAM_QR, 1, nullptr), DOCCAM_CODES_BAD_ARGUMENT);
    doccam_codes_free(nullptr);
}

TEST_F(CodeInterface, TakesAnyTime) {
    const double endless = std::numeric_limits<double>::infinity();
    EXPECT_THAT(readTexts(picture_, DOCCAM_QR, 0), ElementsAre("QR Code: page 1"));
    EXPECT_THAT(readTexts(picture_, DOCCAM_QR, endless), ElementsAre("QR Code: page 1"));
}

TEST_F(CodeInterface, RefusesImagesBeyondItsLimits) {
    for (const DoccamImage& image : {DoccamImage{nullptr, 10, 10, 30, DOCCAM_PIXELS_BGR},
                                     DoccamImage{picture_.data, 0, 10, 30, DOCCAM_PIXELS_BGR},
                                     DoccamImage{picture_.data, 10, 10, 29, DOCCAM_PIXELS_BGR},
                                     DoccamImage{picture_.data, 32768, 1, 98304, DOCCAM_PIXELS_BGR},
                                     DoccamImage{picture_.data, 10, 10, 30, DOCCAM_PIXELS_BITS}}) {
        EXPECT_EQ(doccam_read_codes(&image, DOCCAM_QR, 1, &codes_), DOCCAM_CODES_BAD_IMAGE);
        EXPECT_EQ(codes_, nullptr);
    }
}

TEST_F(CodeInterface, FindsNothingInPicturesOfAnyShape) {
    for (const cv::Size size : {cv::Size(1, 1), cv::Size(2, 3), cv::Size(32767, 1),
                                cv::Size(1, 32767), cv::Size(5, 4001), cv::Size(64, 64)}) {
        cv::Mat noise(size, CV_8UC1);
        cv::randu(noise, 0, 256);
        EXPECT_THAT(readTexts(noise), IsEmpty());
        EXPECT_THAT(readTexts(cv::Mat(size, CV_8UC3, cv::Scalar::all(255))), IsEmpty());
        EXPECT_THAT(readTexts(cv::Mat(size, CV_8UC3, cv::Scalar::all(0))), IsEmpty());
    }
}

TEST(SymbologyNames, AreThereForEachBitOfTheSet) {
    EXPECT_STREQ(doccam_symbology_name(DOCCAM_EAN_13), "EAN-13");
    EXPECT_STREQ(doccam_symbology_name(DOCCAM_MAXICODE), "MaxiCode");
    for (unsigned bit = 1; bit < DOCCAM_SYMBOLOGIES_ALL; bit <<= 1) {
        EXPECT_NE(doccam_symbology_name(static_cast<int>(bit)), nullptr) << bit;
    }
    for (const int none : {0, 3, -1, 1 << 17, std::numeric_limits<int>::min()}) {
        EXPECT_EQ(doccam_symbology_name(none), nullptr) << none;
    }
    EXPECT_EQ(DOCCAM_SYMBOLOGIES_LINEAR | DOCCAM_SYMBOLOGIES_MATRIX, DOCCAM_SYMBOLOGIES_ALL);
    EXPECT_EQ(DOCCAM_SYMBOLOGIES_LINEAR & DOCCAM_SYMBOLOGIES_MATRIX, 0U);
}

} // namespace
} // namespace doccam::test
