#include "decode/jpeg_header.h"
#include "jpeg_samples.h"

#include <gtest/gtest.h>

namespace doccam::test {
namespace {

TEST(AnnouncedSize, IsThePicturesSize) {
    EXPECT_EQ(announcedSize(jpegOf(samplePicture(101, 75))), cv::Size(101, 75));
}

TEST(AnnouncedSize, IsMissingWithoutAFrameHeader) {
    EXPECT_EQ(announcedSize({}), std::nullopt);
    EXPECT_EQ(announcedSize(Bytes{0xFF}), std::nullopt);
    EXPECT_EQ(announcedSize(Bytes{0xFF, 0xD8, 0xFF, 0xD9}), std::nullopt);
}

TEST(AnnouncedSize, SkipsOtherSegmentsWithWhatTheyContain) {
    const Bytes data = {0xFF, 0xD8, 0xFF, 0xE1, 0, 6, 0xFF, 0xC0, 1, 2,
                        0xFF, 0xC2, 0,    17,   8, 1, 0,    0,    3};
    EXPECT_EQ(announcedSize(data), cv::Size(3, 256));
}

TEST(AnnouncedSize, SkipsStrayBytesBetweenSegments) {
    const Bytes data = {7, 0xFF, 0xD8, 0xFF, 0xFF, 0x10, 0xFF, 0xC0, 0, 17, 8, 0, 2, 0, 3};
    EXPECT_EQ(announcedSize(data), cv::Size(3, 2));
}

TEST(AnnouncedSize, CountsMissingBytesAsZero) {
    EXPECT_EQ(announcedSize(Bytes{0xFF, 0xC0, 0, 17, 8, 1}), cv::Size(0, 256));
    EXPECT_EQ(announcedSize(Bytes{0xFF, 0xC0}), cv::Size(0, 0));
}

} // namespace
} // namespace doccam::test
