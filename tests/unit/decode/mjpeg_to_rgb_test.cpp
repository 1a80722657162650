// The row-by-row JPEG decoder offered to hosts.
#include "jpeg_samples.h"
#include "support/printed_text.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>

namespace {
std::atomic<bool> memoryIsShort{false};
}

// The linker redirects every malloc of this program and the library's objects in it to these.
extern "C" void* __real_malloc(std::size_t size);

extern "C" void* __wrap_malloc(std::size_t size) {
    return memoryIsShort ? nullptr : __real_malloc(size);
}

namespace doccam::test {
namespace {

constexpr const char* kEmptyInput = "Empty input file\n";

// Both entries take the same frame and differ only in how they release the decompressor.
using Entry = int (*)(Bytes frame, cv::Mat& out);

int throughRecord(Bytes frame, cv::Mat& out) {
    VideoBuf record{frame.data(), static_cast<std::int32_t>(frame.size())};
    return Mjpeg2RgbConvert(&record, out);
}

int throughPointer(Bytes frame, cv::Mat& out) {
    return Mjpeg2RgbConvertEx(frame.data(), static_cast<int>(frame.size()), out);
}

class Mjpeg2Rgb : public testing::TestWithParam<Entry> {
  protected:
    static cv::Mat untouched(int width, int height) {
        return {height, width, CV_8UC3, cv::Scalar(1, 2, 3)};
    }

    static bool same(const cv::Mat& left, const cv::Mat& right) {
        return left.size() == right.size() && cv::norm(left, right, cv::NORM_INF) == 0;
    }

    static Bytes sample(Sampling sampling = Sampling::k422) {
        return jpegOf(samplePicture(64, 48), sampling);
    }

    static int decode(Bytes frame, cv::Mat& out) { return GetParam()(std::move(frame), out); }
};

INSTANTIATE_TEST_SUITE_P(Both, Mjpeg2Rgb, testing::Values(&throughRecord, &throughPointer),
                         [](const auto& test) {
                             return test.param == &throughRecord ? "Record" : "Pointer";
                         });

TEST_P(Mjpeg2Rgb, DecodesRedFirst) {
    for (const Sampling sampling : {Sampling::k444, Sampling::k422, Sampling::k420}) {
        cv::Mat out = untouched(64, 48);
        EXPECT_EQ(decode(sample(sampling), out), 0);
        EXPECT_TRUE(same(out, plainlyDecoded(sample(sampling))));
    }
}

TEST_P(Mjpeg2Rgb, ReturnsZeroForTruncatedDataWithOneWarning) {
    Bytes frame = sample();
    frame.resize(frame.size() * 3 / 4);
    cv::Mat out = untouched(64, 48);
    PrintedText warnings(PrintedText::Stream::kError);
    PrintedText printed;
    EXPECT_EQ(decode(frame, out), 0);
    EXPECT_EQ(printed.take(), "");
    EXPECT_EQ(warnings.take(), "Premature end of JPEG file\n");
    EXPECT_TRUE(same(out.rowRange(0, 8), plainlyDecoded(sample()).rowRange(0, 8)));
}

TEST_P(Mjpeg2Rgb, ReturnsZeroWhenOnlyTheEndMarkerIsMissing) {
    Bytes frame = sample();
    frame.resize(frame.size() - 2);
    cv::Mat out = untouched(64, 48);
    PrintedText warnings(PrintedText::Stream::kError);
    EXPECT_EQ(decode(frame, out), 0);
    warnings.take();
    EXPECT_TRUE(same(out, plainlyDecoded(sample())));
}

TEST_P(Mjpeg2Rgb, PrintsLibjpegsMessageForEmptyInput) {
    cv::Mat out = untouched(64, 48);
    PrintedText printed;
    EXPECT_EQ(decode({}, out), -1);
    EXPECT_EQ(printed.take(), kEmptyInput);
    EXPECT_TRUE(same(out, untouched(64, 48)));
}

TEST_P(Mjpeg2Rgb, PrintsLibjpegsMessageForDataThatIsNoJpeg) {
    cv::Mat out = untouched(64, 48);
    PrintedText printed;
    EXPECT_EQ(decode({'G', 'I', 'F', '8'}, out), -1);
    EXPECT_EQ(printed.take(), "Not a JPEG file: starts with 0x47 0x49\n");
}

TEST_P(Mjpeg2Rgb, DecodesAgainAfterAnError) {
    cv::Mat out = untouched(64, 48);
    PrintedText printed;
    EXPECT_EQ(decode(noise(500), out), -1);
    EXPECT_EQ(decode(sample(), out), 0);
    printed.take();
    EXPECT_TRUE(same(out, plainlyDecoded(sample())));
}

TEST_P(Mjpeg2Rgb, RefusesAPictureLargerThanTheOutput) {
    for (const cv::Size size : {cv::Size(63, 60), cv::Size(80, 47)}) {
        cv::Mat out = untouched(size.width, size.height);
        PrintedText printed;
        EXPECT_EQ(decode(sample(), out), -1);
        EXPECT_EQ(printed.take(), "The JPEG is larger than the output.\n");
        EXPECT_TRUE(same(out, untouched(size.width, size.height)));
    }
}

TEST_P(Mjpeg2Rgb, WritesASmallerPicturesRowsBackToBack) {
    cv::Mat out = untouched(80, 60);
    EXPECT_EQ(decode(sample(), out), 0);
    const cv::Mat packed = out.reshape(0, 1).colRange(0, 64 * 48).clone().reshape(0, 48);
    EXPECT_TRUE(same(packed, plainlyDecoded(sample())));
    EXPECT_EQ(out.at<cv::Vec3b>(59, 79), cv::Vec3b(1, 2, 3));
}

TEST_P(Mjpeg2Rgb, RefusesPicturesWithoutColour) {
    cv::Mat out = untouched(64, 48);
    PrintedText printed;
    EXPECT_EQ(decode(sample(Sampling::kGrey), out), -1);
    EXPECT_EQ(printed.take(), "The JPEG does not have three components.\n");
    EXPECT_TRUE(same(out, untouched(64, 48)));
}

TEST_P(Mjpeg2Rgb, RefusesOutputsItCannotFill) {
    const char* const line =
        "The output is not a continuous image of 8-bit pixels with three channels.\n";
    cv::Mat none;
    cv::Mat grey(48, 64, CV_8UC1);
    cv::Mat wide = untouched(80, 60);
    cv::Mat view = wide(cv::Rect(0, 0, 64, 48));
    for (cv::Mat* const out : {&none, &grey, &view}) {
        PrintedText printed;
        EXPECT_EQ(decode(sample(), *out), -1);
        EXPECT_EQ(printed.take(), line);
    }
    EXPECT_TRUE(same(wide, untouched(80, 60)));
}

TEST_P(Mjpeg2Rgb, IgnoresLeftOverBytesPastThePicture) {
    Bytes frame = sample();
    const Bytes rest = noise(100'000);
    frame.insert(frame.end(), rest.begin(), rest.end());
    cv::Mat out = untouched(64, 48);
    EXPECT_EQ(decode(frame, out), 0);
    EXPECT_TRUE(same(out, plainlyDecoded(sample())));
}

TEST_P(Mjpeg2Rgb, StaysWithinTheBoundsOfCorruptFrames) {
    constexpr int kRowsAround = 8;
    const cv::Mat rows = untouched(64, kRowsAround);
    const Bytes good = sample();
    PrintedText warnings(PrintedText::Stream::kError);
    PrintedText printed;
    for (std::size_t i = 0; i < good.size(); ++i) {
        Bytes bad = good;
        bad[i] = static_cast<unsigned char>(~bad[i]);
        const cv::Mat around = untouched(64, 48 + 2 * kRowsAround);
        cv::Mat out = around.rowRange(kRowsAround, kRowsAround + 48);
        const int result = decode(bad, out);
        EXPECT_TRUE(result == 0 || result == -1);
        EXPECT_TRUE(same(around.rowRange(0, kRowsAround), rows));
        EXPECT_TRUE(same(around.rowRange(kRowsAround + 48, around.rows), rows));
    }
}

[[noreturn]] void decodeWithoutMemory(Entry entry, Bytes frame) {
    VideoBuf record{frame.data(), static_cast<std::int32_t>(frame.size())};
    cv::Mat out(48, 64, CV_8UC3, cv::Scalar(1, 2, 3));
    const cv::Mat before = out.clone();
    memoryIsShort = true;
    const int result = entry == &throughRecord
                           ? Mjpeg2RgbConvert(&record, out)
                           : Mjpeg2RgbConvertEx(record.start, record.length, out);
    memoryIsShort = false;
    _exit(result == -1 && cv::norm(out, before, cv::NORM_INF) == 0 ? 0 : 1);
}

// In its own process: without memory the decompressor is not released.
TEST_P(Mjpeg2Rgb, ReturnsMinusOneWhenThereIsNoMemoryForARow) {
    EXPECT_EXIT(decodeWithoutMemory(GetParam(), sample()), testing::ExitedWithCode(0), "");
}

TEST_P(Mjpeg2Rgb, KeepsTheMessagesOfTwoThreadsApart) {
    PrintedText printed;
    const auto decodeOften = [](const Bytes& frame, Entry entry) {
        cv::Mat out = untouched(64, 48);
        for (int i = 0; i < 200; ++i) {
            EXPECT_EQ(entry(frame, out), -1);
        }
    };
    std::thread other(decodeOften, Bytes{'G', 'I', 'F'}, GetParam());
    decodeOften({}, GetParam());
    other.join();
    std::string text = printed.take();
    for (const std::string line : {kEmptyInput, "Not a JPEG file: starts with 0x47 0x49\n"}) {
        for (std::size_t at = 0; (at = text.find(line)) != std::string::npos;) {
            text.erase(at, line.size());
        }
    }
    EXPECT_EQ(text, "");
}

TEST(Mjpeg2RgbConvert, TreatsAMissingFrameAsEmptyInput) {
    cv::Mat out(48, 64, CV_8UC3);
    VideoBuf record{nullptr, 10};
    PrintedText printed;
    EXPECT_EQ(Mjpeg2RgbConvert(nullptr, out), -1);
    EXPECT_EQ(Mjpeg2RgbConvert(&record, out), -1);
    EXPECT_EQ(Mjpeg2RgbConvertEx(nullptr, 10, out), -1);
    EXPECT_EQ(printed.take(), std::string(kEmptyInput) + kEmptyInput + kEmptyInput);
}

TEST(Mjpeg2RgbConvert, TreatsANegativeLengthAsEmptyInput) {
    Bytes frame = jpegOf(samplePicture(64, 48));
    cv::Mat out(48, 64, CV_8UC3);
    PrintedText printed;
    EXPECT_EQ(Mjpeg2RgbConvertEx(frame.data(), -1, out), -1);
    EXPECT_EQ(printed.take(), kEmptyInput);
}

TEST(CovertOneLine, CopiesThePixelsInTheirOrder) {
    unsigned char source[9] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    unsigned char target[9] = {};
    EXPECT_EQ(CovertOneLine(2, 24, 99, source, target), 0);
    EXPECT_EQ(Bytes(target, target + 9), (Bytes{1, 2, 3, 4, 5, 6, 0, 0, 0}));
}

TEST(CovertOneLine, CopiesNothingForOtherDepths) {
    unsigned char source[3] = {1, 2, 3};
    unsigned char target[3] = {};
    EXPECT_EQ(CovertOneLine(1, 32, 24, source, target), -1);
    EXPECT_EQ(CovertOneLine(-5, 24, 24, source, target), 0);
    EXPECT_EQ(Bytes(target, target + 3), Bytes(3, 0));
}

} // namespace
} // namespace doccam::test
