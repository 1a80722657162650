#include "barcode/code_scan.h"
#include "code_drawing.h"
#include "plain_scan.h"
#include "reading_outcome.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <opencv2/core.hpp>

#include <array>
#include <limits>

namespace doccam::test {
namespace {

using testing::SizeIs;

constexpr std::array kQrModes = {1, 2, -1, -99, std::numeric_limits<int>::min()};

// The pictures side by side on white.
cv::Mat sideBySide(const cv::Mat& left, const cv::Mat& right) {
    cv::Mat page(std::max(left.rows, right.rows), left.cols + right.cols, CV_8UC1, cv::Scalar(255));
    left.copyTo(page(cv::Rect({0, 0}, left.size())));
    right.copyTo(page(cv::Rect({left.cols, 0}, right.size())));
    return page;
}

TEST(CodeScan, ReadsBarCodesInModeZeroAndQrCodesInAnyOther) {
    const cv::Mat qrFirst = sideBySide(drawCode(qrCode("square"), 4), drawCode(code128("bars"), 3));
    const cv::Mat barFirst =
        sideBySide(drawCode(code128("bars"), 3), drawCode(qrCode("square"), 4));
    for (const cv::Mat& page : {qrFirst, barFirst}) {
        EXPECT_EQ(ZbarDecoder(page, 0), "bars");
        for (const int mode : kQrModes) {
            EXPECT_EQ(ZbarDecoder(page, mode), "square") << mode;
        }
    }
}

TEST(CodeScan, PrintsNothingWhenItSeesOnlySymbolsOfTheOtherKind) {
    const Outcome bar = outcomeOf(ZbarDecoder, drawCode(qrCode("square"), 4), 0);
    EXPECT_EQ(bar.text, "");
    EXPECT_EQ(bar.printed, "");
    const Outcome qr = outcomeOf(ZbarDecoder, drawCode(code128("bars"), 3), 1);
    EXPECT_EQ(qr.text, "");
    EXPECT_EQ(qr.printed, "");
}

TEST(CodeScan, PrintsOneLineWhenItSeesNoSymbol) {
    for (const int mode : {0, 1}) {
        const Outcome blank =
            outcomeOf(ZbarDecoder, cv::Mat(120, 160, CV_8UC1, cv::Scalar(255)), mode);
        EXPECT_EQ(blank.text, "");
        EXPECT_EQ(blank.printed, nothing(1));
    }
}

TEST(CodeScan, PrintsNothingBesidesTheTextItFinds) {
    const Outcome found = outcomeOf(ZbarDecoder, drawCode(qrCode("square"), 4), 1);
    EXPECT_EQ(found.text, "square");
    EXPECT_EQ(found.printed, "");
}

TEST(CodeScan, TakesTheFirstOfTwoCodesInTheReadersOrder) {
    for (const int mode : {0, 1}) {
        const auto draw = [mode](const char* text) {
            return mode == 0 ? drawCode(code128(text), 3) : drawCode(qrCode(text), 4);
        };
        const cv::Mat page = sideBySide(draw("first page"), draw("second page"));
        const auto symbols = symbolsIn(page);
        ASSERT_THAT(symbols, SizeIs(2));
        EXPECT_EQ(ZbarDecoder(page, mode), symbols.front().second);
    }
}

TEST(CodeScan, ReturnsUnprintableBytesAndZerosUnchanged) {
    const std::string payload("\x01\r\n\t\x1b[0m\0\x7f end\n", 14);
    EXPECT_EQ(ZbarDecoder(drawCode(qrCode(payload), 4), 1), payload);
    EXPECT_EQ(ZbarDecoder(drawCode(code128("a\tb\r\n"), 3), 0), "a\tb\r\n");
}

TEST(CodeScan, ReturnsUtf8Unchanged) {
    const std::string payload = "Stra\u00dfe, K\u00f6ln, \u20ac, \u6587\u66f8";
    EXPECT_EQ(ZbarDecoder(drawCode(qrCode(payload), 4), 1), payload);
}

TEST(CodeScan, ReturnsHighBytesAsZbarDoes) {
    std::string payload;
    for (int byte = 0; byte < 256; ++byte) {
        payload += static_cast<char>(byte);
    }
    const cv::Mat picture = drawCode(qrCode(payload), 4);
    const auto symbols = symbolsIn(picture);
    ASSERT_THAT(symbols, SizeIs(1));
    ASSERT_NE(symbols.front().second, "");
    EXPECT_EQ(ZbarDecoder(picture, 1), symbols.front().second);
}

TEST(CodeScan, ReadsPartOfALargerPicture) {
    const cv::Mat code = drawCode(qrCode("square"), 4);
    cv::Mat page(code.rows + 31, code.cols + 57, CV_8UC1, cv::Scalar(0));
    cv::Mat part = page(cv::Rect({13, 9}, code.size()));
    code.copyTo(part);
    ASSERT_FALSE(part.isContinuous());
    EXPECT_EQ(ZbarDecoder(part, 1), "square");
}

TEST(CodeScan, LeavesThePixelsAlone) {
    const cv::Mat code = drawCode(qrCode("square"), 4);
    const cv::Mat before = code.clone();
    ZbarDecoder(code, 1);
    EXPECT_EQ(cv::norm(code, before, cv::NORM_INF), 0);
}

TEST(CodeScan, SeesNoSymbolInAPictureThatIsNotGrey) {
    const cv::Mat code = drawCode(qrCode("square"), 4);
    cv::Mat wide;
    code.convertTo(wide, CV_16U);
    cv::Mat colour;
    cv::merge(std::vector<cv::Mat>{code, code, code}, colour);
    for (const cv::Mat& picture : {cv::Mat(), wide, colour}) {
        EXPECT_EQ(outcomeOf(ZbarDecoder, picture, 1).printed, nothing(1));
    }
}

TEST(CodeScan, SeesNoSymbolInPicturesOfAFewPixels) {
    for (int height = 1; height <= 4; ++height) {
        for (int width = 1; width <= 4; ++width) {
            const cv::Mat picture(height, width, CV_8UC1, cv::Scalar(255));
            EXPECT_EQ(outcomeOf(ZbarDecoder, picture, 1).printed, nothing(1))
                << width << " x " << height;
        }
    }
}

} // namespace
} // namespace doccam::test
