#include "documents/layers/fax_size.h"

#include <gtest/gtest.h>

namespace doccam::test {

namespace {

using host::faxSize;

constexpr std::size_t kEndOfBlock = 24; // bits

std::size_t bytes(std::size_t bits) {
    return (bits + kEndOfBlock + 7) / 8;
}

TEST(FaxSize, IsABitForEachWhiteRow) {
    EXPECT_EQ(faxSize(cv::Mat::zeros(800, 1000, CV_8U)), bytes(800));
}

TEST(FaxSize, CountsRunsOfTheFirstRowAndUnchangedEdgesBelow) {
    cv::Mat mask = cv::Mat::zeros(400, 100, CV_8U);
    mask.colRange(10, 15).setTo(255);
    // Horizontal, 10 white, 5 black, and the row's end; then three edges as above.
    EXPECT_EQ(faxSize(mask), bytes(3 + 5 + 4 + 1 + 399 * 3));
}

TEST(FaxSize, CountsRunsOfMoreThan63Pixels) {
    cv::Mat mask = cv::Mat::zeros(1, 3000, CV_8U);
    mask.colRange(200, 2900).setTo(255);
    // 192 + 8 white pixels; 2560 + 128 + 12 black ones.
    EXPECT_EQ(faxSize(mask), bytes(3 + 6 + 5 + 12 + 12 + 7 + 1));
}

TEST(FaxSize, CountsEdgesMovedByUpToThreePixels) {
    cv::Mat mask = cv::Mat::zeros(4, 100, CV_8U);
    mask.row(0).colRange(10, 15).setTo(255);
    mask.row(1).colRange(11, 17).setTo(255);
    mask.row(2).colRange(14, 17).setTo(255);
    // Passed over in the last row.
    EXPECT_EQ(faxSize(mask), bytes(3 + 5 + 4 + 1 + (3 + 6 + 1) + (7 + 1 + 1) + (4 + 1)));
}

TEST(FaxSize, CountsBlackFromTheFirstPixel) {
    const cv::Mat mask(2, 64, CV_8U, cv::Scalar(255));
    // No white pixels and 64 + 0 black ones; then both edges as above.
    EXPECT_EQ(faxSize(mask), bytes(3 + 8 + 10 + 10 + (1 + 1)));
}

} // namespace

} // namespace doccam::test
