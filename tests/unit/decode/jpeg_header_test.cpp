#include "decode/jpeg_header.h"
#include "jpeg_samples.h"

#include <gmock/gmock.h>

namespace doccam::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(AnnouncedSizes, AreThePicturesSize) {
    EXPECT_THAT(announcedSizes(jpegOf(samplePicture(101, 75))), ElementsAre(cv::Size(101, 75)));
}

TEST(AnnouncedSizes, AreMissingWithoutAFrameHeader) {
    EXPECT_THAT(announcedSizes({}), IsEmpty());
    EXPECT_THAT(announcedSizes(Bytes{0xFF}), IsEmpty());
    EXPECT_THAT(announcedSizes(Bytes{0xFF, 0xD8, 0xFF, 0xD9}), IsEmpty());
}

TEST(AnnouncedSizes, SkipOtherSegmentsWithWhatTheyContain) {
    const Bytes data = {0xFF, 0xD8, 0xFF, 0xE1, 0, 6, 0xFF, 0xC0, 1, 2,
                        0xFF, 0xC2, 0,    17,   8, 1, 0,    0,    3};
    EXPECT_THAT(announcedSizes(data), ElementsAre(cv::Size(3, 256)));
}

TEST(AnnouncedSizes, SkipStrayBytesBetweenSegments) {
    const Bytes data = {7, 0xFF, 0xD8, 0xFF, 0xFF, 0x10, 0xFF, 0xC0, 0, 17, 8, 0, 2, 0, 3};
    EXPECT_THAT(announcedSizes(data), ElementsAre(cv::Size(3, 2)));
}

TEST(AnnouncedSizes, CountMissingBytesAsZero) {
    EXPECT_THAT(announcedSizes(Bytes{0xFF, 0xC0, 0, 17, 8, 1}), ElementsAre(cv::Size(0, 256)));
    EXPECT_THAT(announcedSizes(Bytes{0xFF, 0xC0}), ElementsAre(cv::Size(0, 0)));
}

TEST(AnnouncedSizes, AreThoseOfEveryFrameHeader) {
    const Bytes data = {0xFF, 0xC0, 0, 17, 8, 0, 2, 0, 3, 0xFF, 0xC1, 0, 17, 8, 0, 0, 0, 0};
    EXPECT_THAT(announcedSizes(data), ElementsAre(cv::Size(3, 2), cv::Size(0, 0)));
}

TEST(AnnouncedSizes, AreLookedForBehindMarkersThatAreNotPassedOver) {
    const Bytes data = {0xFF, 0xF0, 0, 12, 0xFF, 0xC0, 0, 17, 8, 0, 0, 0, 0};
    EXPECT_THAT(announcedSizes(data), ElementsAre(cv::Size(0, 0)));
}

} // namespace
} // namespace doccam::test
