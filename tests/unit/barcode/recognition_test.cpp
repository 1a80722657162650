// Codes read from image files.
#include "code_drawing.h"
#include "code_pictures.h"
#include "reading_outcome.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <fstream>
#include <optional>
#include <thread>

namespace doccam::test {
namespace {

const std::string kStart = "RecogBarQrCodeFromFile start\r\n";
const std::string kEnd = "RecogBarQrCodeFromFile end\r\n";
const std::string kUnreadable = "read image file error!!\r\n";

class CodeFile : public testing::Test {
  protected:
    std::string write(const std::string& name, const cv::Mat& picture) const {
        EXPECT_TRUE(cv::imwrite(folder_.file(name), picture));
        return folder_.file(name);
    }

    // What reading the file returns, nothing for a null pointer; printed_ holds what it prints.
    std::optional<std::string> read(const std::string& path, int mode) {
        PrintedText printed;
        const char* text = RecogBarQrCodeFromFile(path.c_str(), mode);
        printed_ = printed.take();
        return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
    }

    const ScratchFolder folder_;
    std::string printed_;
};

TEST_F(CodeFile, ReturnsTheTextAndPrintsIt) {
    const std::string path = write("page.png", drawCode(qrCode("on file"), 4));
    EXPECT_EQ(read(path, 1), "on file");
    EXPECT_EQ(printed_, kStart + "resultStr:on file\r\n" + kEnd);
}

TEST_F(CodeFile, IsReadInEveryFormat) {
    const cv::Mat bars = drawCode(code128("bars"), 3);
    for (const char* name : {"a.jpg", "a.png", "a.bmp", "a.tif", "a.pgm", "a.webp"}) {
        EXPECT_EQ(read(write(name, bars), 0), "bars") << name;
    }
}

TEST_F(CodeFile, ReturnsTheRequestedOneOfTwoCodes) {
    const std::string path = write("two.png", photograph({qrCode("square"), code128("bars")}, {}));
    EXPECT_EQ(read(path, 0), "bars");
    for (const int mode : {1, 2, -1, -99}) {
        EXPECT_EQ(read(path, mode), "square") << mode;
    }
}

TEST_F(CodeFile, WithoutTheRequestedKindReturnsTheEmptyText) {
    EXPECT_EQ(read(write("qr.png", drawCode(qrCode("square"), 4)), 0), "");
    EXPECT_EQ(printed_, kStart + "resultStr:\r\n" + kEnd);
    EXPECT_EQ(read(write("bar.png", drawCode(code128("bars"), 3)), 1), "");
    EXPECT_EQ(printed_, kStart + "resultStr:\r\n" + kEnd);
}

TEST_F(CodeFile, WithoutAnySymbolReturnsNull) {
    const std::string path = write("blank.png", cv::Mat(120, 160, CV_8UC1, cv::Scalar(255)));
    for (const int mode : {0, 1}) {
        EXPECT_EQ(read(path, mode), std::nullopt);
        EXPECT_EQ(printed_, kStart + nothing(1));
    }
}

TEST_F(CodeFile, ThatIsMissingReturnsNull) {
    EXPECT_EQ(read(folder_.file("none.png"), 1), std::nullopt);
    EXPECT_EQ(printed_, kStart + kUnreadable);
}

TEST_F(CodeFile, ThatIsNoImageReturnsNull) {
    const std::string text = folder_.file("text.png");
    std::ofstream(text) << "no image";
    const std::string empty = folder_.file("empty.png");
    std::ofstream(empty).close();
    for (const std::string& path : {text, empty, folder_.path().string(), std::string()}) {
        EXPECT_EQ(read(path, 1), std::nullopt) << path;
        EXPECT_EQ(printed_, kStart + kUnreadable) << path;
    }
}

TEST_F(CodeFile, OfMorePixelsThanOpenCvTakesReturnsNull) {
    const std::string path = folder_.file("huge.pgm");
    std::ofstream(path) << "P5\n1000000 1000000\n255\n";
    EXPECT_EQ(read(path, 1), std::nullopt);
    EXPECT_EQ(printed_, kStart + kUnreadable);
}

TEST_F(CodeFile, WithoutAPathReturnsNull) {
    PrintedText printed;
    EXPECT_EQ(RecogBarQrCodeFromFile(nullptr, 1), nullptr);
    EXPECT_EQ(printed.take(), kStart + kUnreadable);
}

TEST_F(CodeFile, IsScannedOnceUnprocessed) {
    // The live cascade reads it after an opening.
    const cv::Mat code = withSpecks(drawCode(code128("specks"), 8));
    cv::Mat frame;
    cv::cvtColor(code, frame, cv::COLOR_GRAY2RGB);
    {
        const PrintedText silent;
        ASSERT_EQ(BarQrDecodePro(frame, 0), "specks");
    }
    EXPECT_EQ(read(write("specks.png", code), 0), std::nullopt);
    EXPECT_EQ(printed_, kStart + nothing(1));
}

TEST_F(CodeFile, IsWeighedWithRedAndBlueExchanged) {
    const cv::Mat code = drawCode(qrCode("red ink"), 6);
    const cv::Scalar red(0, 0, 255); // as files are written, blue first
    const cv::Scalar blue(255, 0, 0);
    cv::Mat page(code.size(), CV_8UC3, blue);
    page.setTo(red, code == 0);
    EXPECT_EQ(read(write("red_ink.png", page), 1), "red ink");
    page.setTo(red);
    page.setTo(blue, code == 0);
    EXPECT_EQ(read(write("blue_ink.png", page), 1), std::nullopt);
}

TEST_F(CodeFile, TextOutlivesItsThread) {
    const std::string path =
        write("a.png", drawCode(qrCode("longer than a short string holds"), 4));
    const PrintedText silent;
    const char* text = nullptr;
    std::thread([&] { text = RecogBarQrCodeFromFile(path.c_str(), 1); }).join();
    EXPECT_STREQ(text, "longer than a short string holds");
}

TEST_F(CodeFile, TextOutlivesFifteenFurtherTextsOfAnyThread) {
    const std::string first = write("first.png", drawCode(qrCode("the first of sixteen texts"), 4));
    const std::string second = write("second.png", drawCode(qrCode("another one"), 4));
    const PrintedText silent;
    const char* text = RecogBarQrCodeFromFile(first.c_str(), 1);
    for (int further = 0; further < 15; ++further) {
        const auto read = [&] {
            EXPECT_STREQ(RecogBarQrCodeFromFile(second.c_str(), 1), "another one");
        };
        if (further % 2 == 0) {
            std::thread(read).join();
        } else {
            read();
        }
    }
    EXPECT_STREQ(text, "the first of sixteen texts");
}

TEST_F(CodeFile, WithAZeroByteSeemsToEndThere) {
    const std::string payload("before\0after", 12);
    EXPECT_EQ(read(write("zero.png", drawCode(qrCode(payload), 4)), 1), "before");
}

} // namespace
} // namespace doccam::test
