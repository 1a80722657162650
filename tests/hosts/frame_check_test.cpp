#include "doctor/frame_check.h"

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

namespace {

using namespace doccam::host;

std::vector<std::uint8_t> jpeg() {
    cv::Mat picture(48, 64, CV_8UC3);
    cv::RNG(7).fill(picture, cv::RNG::UNIFORM, 0, 256);
    std::vector<std::uint8_t> bytes;
    cv::imencode(".jpg", picture, bytes);
    return bytes;
}

FrameFlaw flawOfMjpeg(const std::vector<std::uint8_t>& bytes) {
    return flawOf(bytes, Format::kMjpeg, {64, 48});
}

TEST(FrameCheck, AcceptsAWholeJpegWithLeftOverBytesAfterIt) {
    std::vector<std::uint8_t> bytes = jpeg();
    EXPECT_EQ(flawOfMjpeg(bytes), FrameFlaw::kNone);
    bytes.resize(bytes.size() + 100, 0x11);
    EXPECT_EQ(flawOfMjpeg(bytes), FrameFlaw::kNone);
}

TEST(FrameCheck, FindsAJpegWithoutItsEndShort) {
    std::vector<std::uint8_t> bytes = jpeg();
    bytes.resize(bytes.size() * 3 / 4);
    EXPECT_EQ(flawOfMjpeg(bytes), FrameFlaw::kShort);
}

TEST(FrameCheck, FindsAFrameWithoutBytesShort) {
    EXPECT_EQ(flawOfMjpeg({}), FrameFlaw::kShort);
    EXPECT_EQ(flawOf({}, Format::kYuyv, {64, 48}), FrameFlaw::kShort);
}

TEST(FrameCheck, FindsNoJpegInOtherBytes) {
    EXPECT_EQ(flawOfMjpeg(std::vector<std::uint8_t>(5000, 0x80)), FrameFlaw::kNoJpeg);
    EXPECT_EQ(flawOfMjpeg({0xFF, 0xD8}), FrameFlaw::kNoJpeg);
}

TEST(FrameCheck, FindsNoJpegInAStartMarkerAlone) {
    std::vector<std::uint8_t> bytes = jpeg();
    for (std::size_t i = 2; i < bytes.size(); ++i) {
        bytes[i] ^= 0x5A;
    }
    EXPECT_EQ(flawOfMjpeg(bytes), FrameFlaw::kNoJpeg);
}

TEST(FrameCheck, CountsTheBytesOfYuyv) {
    const std::vector<std::uint8_t> bytes(64 * 48 * 2);
    EXPECT_EQ(flawOf(bytes, Format::kYuyv, {64, 48}), FrameFlaw::kNone);
    EXPECT_EQ(flawOf(std::span(bytes).first(bytes.size() - 1), Format::kYuyv, {64, 48}),
              FrameFlaw::kShort);
}

} // namespace
