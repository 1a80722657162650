// The decoder's record: its life, and the scaler that the first picture fixes.
#include "mjpeg_fixture.h"
#include "modules/mjpeg/libav_decoder.h"
#include "plain_codec.h"
#include "support/printed_text.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <span>

namespace doccam::test {
namespace {

using MjpegRecord = MjpegFixture;

const void* field(const MjpegDecoder& decoder, int number) {
    const void* fields[8];
    std::memcpy(fields, static_cast<const void*>(&decoder), sizeof fields);
    return fields[number - 1];
}

TEST_F(MjpegRecord, IsKeptByASecondInitialisation) {
    const MjpegDecoder* const first = &decoder();
    av_decode_init();
    EXPECT_EQ(&decoder(), first);
}

TEST_F(MjpegRecord, CanBeReleasedTwice) {
    av_decode_deinit();
    EXPECT_EQ(state().session.pdecode.load(), nullptr);
    av_decode_deinit();
    EXPECT_EQ(state().session.pdecode.load(), nullptr);
}

TEST_F(MjpegRecord, HoldsItsEightFieldsInOrder) {
    cv::Mat out = untouched(64, 48);
    decode(jpegOf(samplePicture(64, 48)), out);
    const MjpegDecoder& record = decoder();
    EXPECT_EQ(field(record, 1), nullptr);
    EXPECT_EQ(field(record, 2), record.context.get());
    EXPECT_EQ(field(record, 3), avcodec_find_decoder(AV_CODEC_ID_MJPEG));
    EXPECT_EQ(field(record, 4), record.picture.get());
    EXPECT_EQ(field(record, 5), record.converted.get());
    EXPECT_EQ(field(record, 6), record.scaler.get());
    EXPECT_EQ(field(record, 7), nullptr);
    EXPECT_EQ(field(record, 8), record.converted->data[0]);
}

TEST_F(MjpegRecord, HasOneScalerFromTheFirstPictureOn) {
    EXPECT_EQ(decoder().scaler, nullptr);
    EXPECT_EQ(decoder().pixels, nullptr);
    cv::Mat out = untouched(64, 48);
    decode(jpegOf(samplePicture(64, 48)), out);
    const SwsContext* const scaler = decoder().scaler.get();
    const std::uint8_t* const pixels = decoder().pixels.get();
    EXPECT_NE(scaler, nullptr);
    decode(jpegOf(samplePicture(64, 48, 20)), out);
    decode(jpegOf(samplePicture(128, 96)), out);
    EXPECT_EQ(decoder().scaler.get(), scaler);
    EXPECT_EQ(decoder().pixels.get(), pixels);
}

TEST_F(MjpegRecord, ScalesALargerPictureFromTheFirstPicturesSize) {
    PrintedText chatter(PrintedText::Stream::kError); // from the plain call
    decoded(jpegOf(samplePicture(64, 48)), 96, 72);
    const Bytes larger = jpegOf(samplePicture(128, 96, 20));
    EXPECT_TRUE(same(decoded(larger, 96, 72), plainlyScaled(larger, {96, 72}, {64, 48})));
}

TEST_F(MjpegRecord, ScalesASmallerLaterPictureAsAWhole) {
    PrintedText printed;
    decoded(jpegOf(samplePicture(64, 48)), 64, 48);
    for (const cv::Size size : {cv::Size(32, 48), cv::Size(64, 24)}) {
        PrintedText chatter(PrintedText::Stream::kError); // from the plain call
        const Bytes smaller = jpegOf(samplePicture(size.width, size.height, 20));
        EXPECT_TRUE(same(decoded(smaller, 64, 48), plainlyScaled(smaller, {64, 48}, size)));
    }
    EXPECT_EQ(printed.take(), "");
}

TEST_F(MjpegRecord, DecodesPicturesOfAnotherSamplingThanTheFirst) {
    for (const Sampling sampling : {Sampling::k420, Sampling::kGrey}) {
        av_decode_deinit();
        av_decode_init();
        const Bytes other = jpegOf(samplePicture(64, 48, 20), sampling);
        const cv::Mat alone = decoded(other, 64, 48);
        av_decode_deinit();
        av_decode_init();
        decoded(jpegOf(samplePicture(64, 48)), 64, 48);
        EXPECT_TRUE(same(decoded(other, 64, 48), alone));
    }
}

TEST_F(MjpegRecord, RecoversFromAFirstFrameOfAWrongSize) {
    const Bytes good = jpegOf(samplePicture(64, 48));
    const cv::Mat alone = decoded(good, 64, 48);
    av_decode_deinit();
    av_decode_init();
    Bytes damaged = good;
    const unsigned char frameHeader[] = {0xFF, 0xC0};
    *(std::search(damaged.begin(), damaged.end(), frameHeader, frameHeader + 2) + 6) = 49;
    PrintedText printed;
    decoded(damaged, 64, 48);
    EXPECT_TRUE(same(decoded(good, 64, 48), alone));
}

TEST_F(MjpegRecord, ServesASmallerRequestFromAPictureOfTheFirstSize) {
    const Bytes frame = jpegOf(samplePicture(50, 40));
    const cv::Mat whole = decoded(frame, 50, 40);
    const cv::Mat out = decoded(frame, 30, 20);
    EXPECT_EQ(std::memcmp(out.data, whole.data, std::size_t{30} * 20 * 3), 0);
}

TEST_F(MjpegRecord, KeepsTheImageForALargerRequestThanTheFirst) {
    const Bytes frame = jpegOf(samplePicture(64, 48));
    decoded(frame, 64, 48);
    EXPECT_TRUE(same(decoded(frame, 65, 48), untouched(65, 48)));
}

TEST_F(MjpegRecord, NoticesANewSizeAfterReinitialisation) {
    decoded(jpegOf(samplePicture(128, 96)), 128, 96);
    av_decode_deinit();
    av_decode_init();
    const Bytes frame = jpegOf(samplePicture(64, 48));
    EXPECT_GT(cv::PSNR(decoded(frame, 64, 48), plainlyDecoded(frame)), 38);
}

class MjpegPlace : public MjpegFixture, public testing::WithParamInterface<Sampling> {
  protected:
    // Decodes into memory that begins offset bytes past an aligned address, and checks the bytes
    // around the picture.
    void expectOnlyThePicture(cv::Size size, std::size_t offset) {
        av_decode_deinit();
        av_decode_init();
        const Bytes frame = jpegOf(samplePicture(size.width, size.height), GetParam());
        const std::size_t bytes = std::size_t{3} * static_cast<std::size_t>(size.area());
        cv::Mat memory(1, static_cast<int>(bytes) + 2 * kAround, CV_8UC1, cv::Scalar(7));
        unsigned char* const first = memory.data + kAround + offset;
        cv::Mat pictureView(size, CV_8UC3, first);
        decode(frame, pictureView);
        EXPECT_TRUE(same(pictureView, plainlyScaled(frame, size))) << size << ", " << offset;
        const std::span<const unsigned char> all(memory.data, memory.total());
        EXPECT_THAT(all.first(kAround + offset), testing::Each(7)) << size;
        EXPECT_THAT(all.subspan(kAround + offset + bytes), testing::Each(7)) << size;
    }

    static constexpr int kAround = 256;

  private:
    PrintedText chatter_{PrintedText::Stream::kError}; // from the plain call
};

INSTANTIATE_TEST_SUITE_P(Samplings, MjpegPlace,
                         testing::Values(Sampling::k422, Sampling::k420, Sampling::k444),
                         [](const auto& test) { return nameOf(test.param); });

TEST_P(MjpegPlace, HoldsThePictureAndNothingElse) {
    for (const int width : {16, 32, 48, 64, 160, 200, 203, 656}) {
        for (const int height : {2, 16, 34, 35, 120}) {
            expectOnlyThePicture({width, height}, 0);
        }
    }
}

// Rows are shared among the threads.
TEST_P(MjpegPlace, HoldsThePictureHoweverManyThreadsMakeIt) {
    const int usual = cv::getNumThreads();
    for (const int threads : {1, 2, 3, 5, 8}) {
        SCOPED_TRACE(threads);
        cv::setNumThreads(threads);
        expectOnlyThePicture({160, 34}, 0);
        expectOnlyThePicture({656, 120}, 0);
    }
    cv::setNumThreads(usual);
}

TEST_P(MjpegPlace, NeedNotBeAligned) {
    for (const std::size_t offset : {1, 6, 16, 32}) {
        expectOnlyThePicture({64, 48}, offset);
    }
}

} // namespace
} // namespace doccam::test
