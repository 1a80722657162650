#include "jpeg_samples.h"
#include "modules/mjpeg/jpeg_header.h"

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

TEST(AnnouncedSizes, SkipOtherSegmentsWithTheirContents) {
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

TEST(AnnouncedSizes, AreSearchedForAfterMarkersWithoutALength) {
    const Bytes data = {0xFF, 0xF0, 0, 12, 0xFF, 0xC0, 0, 17, 8, 0, 0, 0, 0};
    EXPECT_THAT(announcedSizes(data), ElementsAre(cv::Size(0, 0)));
}

// A plain search byte by byte.
std::vector<cv::Size> plainlyAnnounced(const Bytes& data) {
    const auto number = [&data](std::size_t at) {
        const auto byte = [&](std::size_t i) { return i < data.size() ? int{data[i]} : 0; };
        return byte(at) * 256 + byte(at + 1);
    };
    std::vector<cv::Size> sizes;
    std::size_t at = 0;
    while (at + 1 < data.size()) {
        const int marker = data[at] == 0xFF ? data[at + 1] : 0;
        if (marker < 0xC0 || marker > 0xFE) {
            ++at;
            continue;
        }
        at += 2;
        if (marker == 0xD9 && !sizes.empty()) {
            break;
        }
        if (marker <= 0xC3 || marker == 0xF7) {
            sizes.emplace_back(number(at + 5), number(at + 3));
        }
        const bool skipped = marker == 0xC4 || marker == 0xDA || marker == 0xDB || marker == 0xDD ||
                             (marker >= 0xE0 && marker <= 0xEF) || marker == 0xF8 || marker == 0xFE;
        at += skipped ? static_cast<std::size_t>(number(at)) : 0;
    }
    return sizes;
}

TEST(AnnouncedSizes, AreThoseOfASearchByteByByte) {
    for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
        Bytes data = noise(300, seed);
        for (std::size_t i = seed % 7; i < data.size(); i += 1 + seed % 11) {
            data[i] = 0xFF;
        }
        for (std::size_t i = 3; i + 1 < data.size(); i += 4) {
            // Every other input has short segments.
            data[i] = static_cast<unsigned char>(seed % 2 == 0 ? data[i] % 4 : data[i]);
        }
        EXPECT_EQ(announcedSizes(data), plainlyAnnounced(data)) << seed;
    }
}

} // namespace
} // namespace doccam::test
