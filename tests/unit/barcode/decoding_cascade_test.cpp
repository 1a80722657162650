#include "code_drawing.h"
#include "code_pictures.h"
#include "reading_outcome.h"
#include "support/printed_text.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <thread>

namespace doccam::test {
namespace {

std::string betweenStartAndEnd(const std::string& lines) {
    return "BarQrDecodePro start\r\n" + lines + "BarQrDecodePro end\r\n";
}

cv::Mat inColour(const cv::Mat& grey) {
    cv::Mat colour;
    cv::cvtColor(grey, colour, cv::COLOR_GRAY2RGB);
    return colour;
}

// Upper half dark, lower half white: the Otsu threshold equals dark.
cv::Mat halves(int dark) {
    cv::Mat picture(64, 64, CV_8UC1, cv::Scalar(255));
    picture.rowRange(0, 32).setTo(dark);
    return picture;
}

// Light falls off so far that the paper on the right is darker than the ink on the left.
cv::Mat shaded() {
    cv::Mat code = drawCode(qrCode("shade"), 6);
    for (int y = 0; y < code.rows; ++y) {
        for (int x = 0; x < code.cols; ++x) {
            auto& pixel = code.at<unsigned char>(y, x);
            const double light = 1 - 0.9 * x / code.cols;
            pixel = cv::saturate_cast<unsigned char>((pixel == 0 ? 110 : 250) * light);
        }
    }
    return code;
}

// Pale ink beside a black desk, in modules too wide for the adaptive threshold's block.
cv::Mat pale(int ink, int paper) {
    cv::Mat code = drawCode(code128("p"), 40);
    code = code.rowRange(code.rows / 2 - 50, code.rows / 2 + 50);
    cv::Mat picture(300, code.cols, CV_8UC1, cv::Scalar(0));
    cv::Mat sheet = picture.rowRange(0, 100);
    sheet.setTo(paper);
    sheet.setTo(ink, code == 0);
    return picture;
}

TEST(DecodingCascade, ReadsACleanCodeInItsFirstScan) {
    const cv::Mat qr = inColour(drawCode(qrCode("clean"), 4));
    EXPECT_EQ(outcomeOf(BarQrDecodePro, qr, 1), (Outcome{"clean", betweenStartAndEnd("")}));
    const cv::Mat bar = inColour(drawCode(code128("clean"), 3));
    EXPECT_EQ(outcomeOf(BarQrDecodePro, bar, 0), (Outcome{"clean", betweenStartAndEnd("")}));
}

TEST(DecodingCascade, ReadsACodeWithSpecksAfterOneOpening) {
    const cv::Mat code = withSpecks(drawCode(code128("specks"), 8));
    EXPECT_EQ(outcomeOf(GetQRInBinImg, code, 0), (Outcome{"specks", nothing(1)}));
    EXPECT_EQ(outcomeOf(GetQR, code, 0), (Outcome{"specks", nothing(1)}));
}

TEST(DecodingCascade, ScansABinaryPictureTwiceAtMost) {
    EXPECT_EQ(outcomeOf(GetQRInBinImg, halves(0), 0), (Outcome{"", nothing(2)}));
}

TEST(DecodingCascade, ReadsAnUnevenlyLitCodeByAdaptiveThresholdAfterOtsus) {
    EXPECT_EQ(outcomeOf(GetQR, shaded(), 1), (Outcome{"shade", nothing(2)}));
}

TEST(DecodingCascade, ReadsAPaleCodeOnTheFirstThresholdThatShowsIt) {
    // Otsu's threshold is the desk's 0. Neither it, nor the adaptive one, nor the steps below the
    // ink's level show the code.
    EXPECT_EQ(outcomeOf(GetQR, pale(200, 230), 0), (Outcome{"p", nothing(4 + 10 * 2)}));
    EXPECT_EQ(outcomeOf(GetQR, pale(130, 150), 0), (Outcome{"p", nothing(4 + 7 * 2)}));
}

class ScansOfABlankFrame : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(ScansOfABlankFrame, AreTwoForEachBinarization) {
    const auto [otsu, scans] = GetParam();
    const cv::Mat frame = inColour(halves(otsu));
    for (const int mode : {0, 1}) {
        EXPECT_EQ(outcomeOf(BarQrDecodePro, frame, mode),
                  (Outcome{"", betweenStartAndEnd(nothing(scans))}));
    }
}

INSTANTIATE_TEST_SUITE_P(ByOtsusThreshold, ScansOfABlankFrame,
                         testing::Values(std::pair(0, 28), std::pair(19, 28), std::pair(20, 26),
                                         std::pair(120, 16), std::pair(199, 10), std::pair(200, 8),
                                         std::pair(219, 8), std::pair(239, 6), std::pair(240, 4),
                                         std::pair(254, 4)));

TEST(DecodingCascade, ContinuesSilentlyWhileItSeesOnlyTheOtherKind) {
    const cv::Mat code = drawCode(qrCode("square"), 4);
    EXPECT_EQ(outcomeOf(GetQRInBinImg, code, 0), (Outcome{"", ""}));
    EXPECT_EQ(outcomeOf(GetQR, code, 0), (Outcome{"", ""}));
}

TEST(DecodingCascade, WeighsTheFirstChannelAsRed) {
    const cv::Mat code = drawCode(qrCode("blue ink"), 6);
    cv::Mat frame(code.size(), CV_8UC3, cv::Scalar(255, 0, 0)); // red paper
    frame.setTo(cv::Scalar(0, 0, 255), code == 0);
    EXPECT_EQ(outcomeOf(BarQrDecodePro, frame, 1).text, "blue ink");
    cv::cvtColor(frame, frame, cv::COLOR_RGB2BGR);
    EXPECT_EQ(outcomeOf(BarQrDecodePro, frame, 1).text, ""); // a negative
}

TEST(DecodingCascade, ReturnsTheRequestedOneOfTwoCodes) {
    const cv::Mat frame = photograph({qrCode("square"), code128("bars")}, {});
    EXPECT_EQ(outcomeOf(BarQrDecodePro, frame, 0).text, "bars");
    for (const int mode : {1, 2, -1}) {
        EXPECT_EQ(outcomeOf(BarQrDecodePro, frame, mode).text, "square") << mode;
    }
}

TEST(DecodingCascade, ReturnsOneOfTwoQrCodes) {
    const cv::Mat frame = photograph({qrCode("upper"), qrCode("lower")}, {});
    const std::string text = outcomeOf(BarQrDecodePro, frame, 1).text;
    EXPECT_TRUE(text == "upper" || text == "lower") << text;
}

TEST(DecodingCascade, LeavesTheFrameAlone) {
    const cv::Mat frame = inColour(halves(120));
    const cv::Mat before = frame.clone();
    outcomeOf(BarQrDecodePro, frame, 1);
    EXPECT_EQ(cv::norm(frame, before, cv::NORM_INF), 0);
}

TEST(DecodingCascade, LetsOpenCvErrorsThrough) {
    const PrintedText silent;
    EXPECT_THROW(BarQrDecodePro(cv::Mat(), 1), cv::Exception);
    EXPECT_THROW(GetQR(cv::Mat(64, 64, CV_32SC1, cv::Scalar(0)), 1), cv::Exception);
    EXPECT_THROW(GetQRInBinImg(cv::Mat(), 1), cv::Exception);
}

TEST(DecodingCascade, ReadsOnManyThreadsAtOnce) {
    const PrintedText silent;
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) {
        readers.emplace_back([i] {
            const std::string text = "reader " + std::to_string(i);
            const cv::Mat frame = inColour(drawCode(qrCode(text), 4));
            for (int round = 0; round < 8; ++round) {
                EXPECT_EQ(BarQrDecodePro(frame, 1), text);
            }
        });
    }
    for (std::thread& reader : readers) {
        reader.join();
    }
}

} // namespace
} // namespace doccam::test
