// Saving a finished page as an image file.
#include "decoded.h"
#include "state/library_state.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace doccam::test;

const cv::Scalar kRed(0, 0, 255); // blue first

class SaveImageTest : public testing::Test {
  protected:
    void TearDown() override {
        SetColorMode(0);
        SetJpgQuality(85);
        SetFileFormat(0);
    }

    std::string save(const std::string& name, const cv::Mat& page) {
        std::string path = scratch_.file(name);
        EXPECT_EQ(SaveImage(path.data(), page), 0);
        return path;
    }

    bool folderIsEmpty() const { return fs::is_empty(scratch_.path()); }

    ScratchFolder scratch_;
    cv::Mat page_ = cv::Mat(30, 50, CV_8UC3, kRed);
};

void expectRed(Pixel pixel) {
    EXPECT_GT(pixel[0], 245);
    EXPECT_LT(pixel[1], 10);
    EXPECT_LT(pixel[2], 10);
}

TEST_F(SaveImageTest, WritesColourInMode0) {
    const Decoded jpeg = readJpeg(save("a.jpg", page_));
    EXPECT_EQ(jpeg.channels, 3);
    EXPECT_EQ(jpeg.width, 50);
    EXPECT_EQ(jpeg.height, 30);
    expectRed(jpeg.at(25, 15));
    const Decoded png = readPng(save("a.png", page_));
    EXPECT_EQ(png.channels, 3);
    EXPECT_EQ(png.at(0, 0), (Pixel{255, 0, 0}));
}

TEST_F(SaveImageTest, WritesOneChannelInMode1) {
    SetColorMode(1);
    const cv::Mat before = page_.clone();
    const Decoded png = readPng(save("a.png", page_));
    EXPECT_EQ(png.channels, 1);
    EXPECT_EQ(png.at(0, 0), (Pixel{76, 76, 76})) << "red's share of the brightness";
    EXPECT_EQ(readJpeg(save("a.jpg", page_)).channels, 1);
    EXPECT_EQ(cv::norm(page_, before, cv::NORM_INF), 0) << "the caller's pixels";
}

TEST_F(SaveImageTest, WeighsBlueFirstPixelsInMode1) {
    SetColorMode(1);
    page_.setTo(cv::Scalar(255, 0, 0));
    EXPECT_EQ(readPng(save("a.png", page_)).at(0, 0), (Pixel{29, 29, 29}));
}

TEST_F(SaveImageTest, WritesTextBlackAndShadowWhiteInMode2) {
    SetColorMode(2);
    cv::Mat page(400, 400, CV_8UC3);
    for (int x = 0; x < page.cols; ++x) {
        page.col(x).setTo(cv::Scalar::all(220 - x / 4)); // from light to shadow
    }
    for (const int x : {40, 200, 360}) {
        page.colRange(x, x + 4).rowRange(190, 210).setTo(cv::Scalar::all(60));
    }
    const cv::Mat before = page.clone();
    const Decoded png = readPng(save("a.png", page));
    EXPECT_EQ(png.channels, 1);
    for (const int x : {40, 200, 360}) {
        EXPECT_EQ(png.at(x + 1, 200), (Pixel{0, 0, 0})) << x;
        EXPECT_EQ(png.at(x + 20, 200), (Pixel{255, 255, 255})) << x;
        EXPECT_EQ(png.at(x + 1, 100), (Pixel{255, 255, 255})) << x;
    }
    EXPECT_EQ(cv::norm(page, before, cv::NORM_INF), 0) << "the caller's pixels";
}

TEST_F(SaveImageTest, BlackensOnlyWhatIsNineteenBelowItsNeighbourhoodInMode2) {
    SetColorMode(2);
    cv::Mat page(400, 400, CV_8UC3, cv::Scalar::all(200));
    page.at<cv::Vec3b>(200, 100) = {181, 181, 181};
    page.at<cv::Vec3b>(200, 300) = {182, 182, 182};
    const Decoded png = readPng(save("a.png", page));
    EXPECT_EQ(png.at(100, 200), (Pixel{0, 0, 0}));
    EXPECT_EQ(png.at(300, 200), (Pixel{255, 255, 255}));
}

TEST_F(SaveImageTest, IgnoresPixelsBeyondTheNeighbourhoodInMode2) {
    SetColorMode(2);
    // 180 beside a wall of 255: black where the wall fills enough of the 179-pixel neighbourhood.
    cv::Mat page(10, 600, CV_8UC3, cv::Scalar::all(180));
    page.colRange(300, 600).setTo(cv::Scalar::all(255));
    const Decoded png = readPng(save("a.png", page));
    EXPECT_EQ(png.at(299, 5), (Pixel{0, 0, 0}));
    // At 254, 44 of 179 columns are bright: mean 198.4, rounded 198, less 19.
    EXPECT_EQ(png.at(254, 5), (Pixel{255, 255, 255}));
    // At 257, 47 are: mean 199.7, rounded 200, less 19.
    EXPECT_EQ(png.at(257, 5), (Pixel{0, 0, 0}));
}

TEST_F(SaveImageTest, WritesNothingInAnyOtherMode) {
    for (const int mode : {3, -1, 100}) {
        SetColorMode(mode);
        for (const char* name : {"a.jpg", "a.png", "a.pdf", "a.xyz"}) {
            save(name, page_);
        }
        save("absent", cv::Mat());
    }
    EXPECT_TRUE(folderIsEmpty());
}

TEST_F(SaveImageTest, UsesTheSetQualityForJpg) {
    const int quantizers[][2] = {{85, 5}, {40, 20}, {100, 1}, {1000, 1}, {-5, 255}};
    for (const auto& [quality, quantizer] : quantizers) {
        SetJpgQuality(quality);
        EXPECT_EQ(readJpeg(save("a.jpg", page_)).firstQuantizer, quantizer) << quality;
    }
}

TEST_F(SaveImageTest, UsesOpenCvsQualityForOtherSpellings) {
    SetJpgQuality(40);
    constexpr int kQuality95 = 2;
    EXPECT_EQ(readJpeg(save("a.JPG", page_)).firstQuantizer, kQuality95);
    EXPECT_EQ(readJpeg(save("a.jpeg", page_)).firstQuantizer, kQuality95);
}

TEST_F(SaveImageTest, WritesBmpAndTiffByExtension) {
    EXPECT_EQ(readBmp(save("a.bmp", page_)).at(49, 29), (Pixel{255, 0, 0}));
    EXPECT_TRUE(readText(save("a.tif", page_)).starts_with("II*"));
}

TEST_F(SaveImageTest, IgnoresTheFileFormatSetting) {
    const std::string expected = readText(save("a.jpg", page_));
    for (const int format : {1, 2, 3, -7}) {
        SetFileFormat(format);
        EXPECT_EQ(readText(save("a.jpg", page_)), expected) << format;
    }
}

TEST_F(SaveImageTest, ThrowsForAPathShorterThanAnExtension) {
    for (const int mode : {0, 3}) {
        SetColorMode(mode);
        std::string path = "ab";
        EXPECT_THROW(SaveImage(path.data(), page_), std::out_of_range);
        EXPECT_THROW(SaveImage(nullptr, page_), std::out_of_range);
    }
}

TEST_F(SaveImageTest, LetsOpenCvsExceptionThrough) {
    std::string path = scratch_.file("a.xyz");
    EXPECT_THROW(SaveImage(path.data(), page_), cv::Exception);
    path = scratch_.file("a.jpg");
    EXPECT_THROW(SaveImage(path.data(), cv::Mat()), cv::Exception);
    SetColorMode(1);
    EXPECT_THROW(SaveImage(path.data(), cv::Mat(2, 2, CV_8UC1, cv::Scalar(0))), cv::Exception);
    EXPECT_TRUE(folderIsEmpty());
}

TEST_F(SaveImageTest, ReturnsZeroWithoutTheFolder) {
    save("missing/a.jpg", page_);
    EXPECT_TRUE(folderIsEmpty());
}

TEST_F(SaveImageTest, PrintsNothing) {
    PrintedText printed;
    save("a.jpg", page_);
    save("missing/a.jpg", page_);
    EXPECT_EQ(printed.take(), "");
}

} // namespace
