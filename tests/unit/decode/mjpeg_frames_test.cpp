// MJPEG frames through the process-wide decoder: what comes out, and what is printed.
#include "decode/mjpeg_frames.h"
#include "mjpeg_fixture.h"
#include "plain_codec.h"
#include "support/peak_memory.h"
#include "support/printed_text.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <limits>

namespace doccam::test {
namespace {

using MjpegFrames = MjpegFixture;

constexpr int kMax = std::numeric_limits<int>::max();

class MjpegSampling : public MjpegFixture, public testing::WithParamInterface<Sampling> {};

TEST_P(MjpegSampling, DecodesRedFirst) {
    const Bytes frame = jpegOf(samplePicture(160, 120), GetParam());
    EXPECT_GT(cv::PSNR(decoded(frame, 160, 120), plainlyDecoded(frame)), 38);
}

TEST_P(MjpegSampling, DecodesOddSizesToTheLastColumn) {
    const Bytes frame = jpegOf(samplePicture(101, 75), GetParam());
    const cv::Mat out = decoded(frame, 101, 75);
    const cv::Mat expected = plainlyDecoded(frame);
    EXPECT_GT(cv::PSNR(out.colRange(93, 101), expected.colRange(93, 101)), 30);
    EXPECT_GT(cv::PSNR(out.rowRange(70, 75), expected.rowRange(70, 75)), 30);
}

TEST_P(MjpegSampling, EqualsThePlainScalerCallWithThePicturesOwnFormat) {
    PrintedText chatter(PrintedText::Stream::kError); // from the plain call
    const Bytes frame = jpegOf(samplePicture(160, 120), GetParam());
    for (const cv::Size size : {cv::Size(160, 120), cv::Size(320, 240), cv::Size(80, 60),
                                cv::Size(101, 75), cv::Size(160, 50), cv::Size(33, 7)}) {
        av_decode_deinit();
        av_decode_init();
        EXPECT_TRUE(same(decoded(frame, size.width, size.height), plainlyScaled(frame, size)))
            << size;
    }
}

INSTANTIATE_TEST_SUITE_P(All, MjpegSampling,
                         testing::Values(Sampling::k444, Sampling::k422, Sampling::k420,
                                         Sampling::kGrey),
                         [](const auto& test) { return nameOf(test.param); });

TEST_F(MjpegFrames, LeavesTheImageAloneForEmptyFrames) {
    PrintedText printed;
    Bytes frame = jpegOf(samplePicture(64, 48));
    cv::Mat out = untouched(64, 48);
    cv::Mat spare;
    do_excute_image(frame.data(), 0, 64, 48, out, spare);
    do_excute_image(frame.data(), -1, 64, 48, out, spare);
    do_excute_image(nullptr, 100, 64, 48, out, spare);
    EXPECT_TRUE(same(out, untouched(64, 48)));
    EXPECT_EQ(printed.take(), "");
}

TEST_F(MjpegFrames, LeavesTheImageAloneWithoutADecoder) {
    av_decode_deinit();
    PrintedText printed;
    EXPECT_TRUE(same(decoded(jpegOf(samplePicture(64, 48)), 64, 48), untouched(64, 48)));
    EXPECT_EQ(printed.take(), "");
}

TEST_F(MjpegFrames, ScalesAPictureOfAnotherSizeAsAWhole) {
    const Bytes frame = jpegOf(samplePicture(160, 120));
    for (const cv::Size size : {cv::Size(320, 240), cv::Size(96, 64)}) {
        av_decode_deinit();
        av_decode_init();
        cv::Mat expected;
        cv::resize(plainlyDecoded(frame), expected, size);
        EXPECT_GT(cv::PSNR(decoded(frame, size.width, size.height), expected), 35) << size;
    }
}

TEST_F(MjpegFrames, SurvivesAPictureFarTallerThanRequested) {
    PrintedText chatter(PrintedText::Stream::kError); // from the plain call
    const Bytes frame = jpegOf(samplePicture(32, 4000), Sampling::k420);
    EXPECT_TRUE(same(decoded(frame, 32, 20), plainlyScaled(frame, {32, 20})));
}

TEST_F(MjpegFrames, IgnoresLeftOverBytesPastThePicture) {
    const Bytes frame = jpegOf(samplePicture(160, 120));
    const cv::Mat expected = decoded(frame, 160, 120);
    for (const Bytes& rest :
         {noise(3'000'000), Bytes(1'000'000, 0), jpegOf(samplePicture(160, 120, 50))}) {
        Bytes buffer = frame;
        buffer.insert(buffer.end(), rest.begin(), rest.end());
        EXPECT_TRUE(same(decoded(buffer, 160, 120), expected));
    }
}

TEST_F(MjpegFrames, PrintsOneLineForEachCorruptFrameAndContinues) {
    const Bytes good = jpegOf(samplePicture(64, 48));
    const Bytes other = jpegOf(samplePicture(64, 48, 30));
    const Bytes headerOnly(good.begin(), good.begin() + 100);
    cv::Mat out = decoded(good, 64, 48);
    const cv::Mat first = out.clone();
    PrintedText printed;
    decode(noise(5000), out);
    decode(headerOnly, out);
    decode(Bytes(1, 0xFF), out);
    EXPECT_EQ(printed.soFar(), "decode error.\ndecode error.\ndecode error.\n");
    EXPECT_TRUE(same(out, first));
    decode(other, out);
    EXPECT_EQ(printed.take(), "decode error.\ndecode error.\ndecode error.\n");
    EXPECT_GT(cv::PSNR(out, plainlyDecoded(other)), 38);
}

TEST_F(MjpegFrames, PrintsALineForEachFrameWhenTheCodecIsMissing) {
    decoder().context.reset();
    PrintedText printed;
    EXPECT_TRUE(same(decoded(jpegOf(samplePicture(64, 48)), 64, 48), untouched(64, 48)));
    EXPECT_EQ(printed.take(), "decode error.\n");
}

TEST_F(MjpegFrames, SkipsAFrameWithoutAPictureSilently) {
    decoder().context->skip_frame = AVDISCARD_ALL;
    PrintedText printed;
    EXPECT_TRUE(same(decoded(jpegOf(samplePicture(64, 48)), 64, 48), untouched(64, 48)));
    EXPECT_EQ(decoder().scaler, nullptr);
    decoder().context->skip_frame = AVDISCARD_DEFAULT;
    EXPECT_FALSE(same(decoded(jpegOf(samplePicture(64, 48)), 64, 48), untouched(64, 48)));
    EXPECT_EQ(printed.take(), "");
}

TEST_F(MjpegFrames, KeepsLibavSilent) {
    PrintedText printed;
    PrintedText chatter(PrintedText::Stream::kError);
    for (const Sampling sampling : {Sampling::k422, Sampling::k420, Sampling::kGrey}) {
        const Bytes good = jpegOf(samplePicture(64, 48), sampling);
        decoded(good, 64, 48);
        for (std::size_t end = 1; end < good.size(); end += 3) {
            decoded(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(end)), 64, 48);
        }
        for (std::size_t i = 0; i < good.size(); ++i) {
            Bytes bad = good;
            bad[i] = static_cast<unsigned char>(bad[i] ^ (1U << (i % 8)));
            decoded(bad, 64, 48);
        }
    }
    EXPECT_EQ(chatter.take(), "");
    EXPECT_NE(printed.take(), "");
}

TEST_F(MjpegFrames, TreatsAnImpossibleSizeAsACorruptFrame) {
    Bytes frame = jpegOf(samplePicture(64, 48));
    const unsigned char frameHeader[] = {0xFF, 0xC0};
    const auto at = std::search(frame.begin(), frame.end(), frameHeader, frameHeader + 2);
    ASSERT_NE(at, frame.end());
    std::fill_n(at + 5, 4, static_cast<unsigned char>(0));
    PrintedText chatter(PrintedText::Stream::kError);
    PrintedText printed;
    decoded(frame, 64, 48);
    EXPECT_EQ(printed.take(), "decode error.\n");
    EXPECT_EQ(chatter.take(), "");
}

// The sample JPEG with another size in its header.
Bytes announcing(int width, int height) {
    Bytes frame = jpegOf(samplePicture(64, 48));
    const unsigned char frameHeader[] = {0xFF, 0xC0};
    const auto at = std::search(frame.begin(), frame.end(), frameHeader, frameHeader + 2);
    for (const auto& [place, side] : {std::pair{5, height}, std::pair{7, width}}) {
        at[place] = static_cast<unsigned char>(side >> 8);
        at[place + 1] = static_cast<unsigned char>(side);
    }
    return frame;
}

TEST_F(MjpegFrames, TreatsAFrameFarLargerThanRequestedAsCorrupt) {
    PrintedText printed;
    const PeakMemory memory;
    decoded(announcing(15000, 15000), 640, 480);
    EXPECT_EQ(printed.take(), "decode error.\n");
    EXPECT_LT(memory.growth(), 100'000);
}

TEST_F(MjpegFrames, AcceptsSizesUpToTheLargestCamerasOrFourTimesTheRequestedOne) {
    const auto decodedFor = [this](int width, int height, cv::Size wanted) {
        av_decode_deinit();
        av_decode_init();
        decoded(jpegOf(cv::Mat(height, width, CV_8UC3, cv::Scalar::all(90))), wanted.width,
                wanted.height);
    };
    PrintedText printed;
    decodedFor(3672, 2856, {64, 48});
    decodedFor(4000, 4000, {2000, 2000});
    EXPECT_EQ(printed.soFar(), "");
    decodedFor(3673, 2856, {64, 48});
    decodedFor(4001, 4000, {2000, 2000});
    EXPECT_EQ(printed.take(), "decode error.\ndecode error.\n");
}

TEST_F(MjpegFrames, DecodesPaddedMemoryInPlaceAndKeepsNoReference) {
    const Bytes frame = jpegOf(samplePicture(160, 120));
    const cv::Mat expected = decoded(frame, 160, 120);
    for (int i = 0; i < 3; ++i) {
        Bytes memory = frame;
        memory.resize(frame.size() + kCodecPadding, 0);
        const Bytes before = memory;
        cv::Mat out = untouched(160, 120);
        storeFrame(slot(), decodeFrame(slot(), {{memory.data(), frame.size()}, true, {160, 120}}),
                   {160, 120}, out);
        EXPECT_TRUE(same(out, expected));
        EXPECT_EQ(memory, before);
    }
}

TEST_F(MjpegFrames, RefusesPaddedCorruptFramesToo) {
    const Bytes memory(4000 + kCodecPadding, 0);
    cv::Mat out = untouched(64, 48);
    PrintedText printed;
    storeFrame(slot(), decodeFrame(slot(), {{memory.data(), 4000}, true, {64, 48}}), {64, 48}, out);
    storeFrame(slot(), decodeFrame(slot(), {{}, true, {64, 48}}), {64, 48}, out);
    EXPECT_EQ(printed.take(), "decode error.\n");
    EXPECT_TRUE(same(out, untouched(64, 48)));
}

TEST_F(MjpegFrames, LeavesImagesThatCannotHoldThePictureAlone) {
    const Bytes frame = jpegOf(samplePicture(64, 48));
    cv::Mat small = untouched(64, 47);
    decode(frame, 64, 48, small);
    EXPECT_TRUE(same(small, untouched(64, 47)));

    cv::Mat wide = untouched(80, 60);
    cv::Mat view = wide(cv::Rect(0, 0, 64, 48));
    decode(frame, view);
    EXPECT_TRUE(same(wide, untouched(80, 60)));

    cv::Mat none;
    decode(frame, 64, 48, none);
    EXPECT_TRUE(none.empty());
}

TEST_F(MjpegFrames, LeavesTheImageAloneForImpossibleSizes) {
    const Bytes frame = jpegOf(samplePicture(64, 48));
    for (const cv::Size size : {cv::Size(kMax, kMax), cv::Size(65536, 65536), cv::Size(0, 48),
                                cv::Size(64, -48), cv::Size(-64, -48), cv::Size(kMax, 1)}) {
        cv::Mat out = untouched(64, 48);
        decode(frame, size.width, size.height, out);
        EXPECT_TRUE(same(out, untouched(64, 48))) << size;
    }
    EXPECT_FALSE(same(decoded(frame, 64, 48), untouched(64, 48)));
}

} // namespace
} // namespace doccam::test
