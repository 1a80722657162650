// The library's defaults: each test needs a process in which the library is unused.
#include "support/scratch_folder.h"

#include <doccam/doccam.h>
#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <fstream>
#include <iterator>
#include <vector>

namespace doccam::test {
namespace {

using Bytes = std::vector<unsigned char>;

cv::Mat colours(cv::Size size) {
    cv::Mat frame(size, CV_8UC3);
    cv::RNG(5).fill(frame, cv::RNG::UNIFORM, 0, 256);
    return frame;
}

Bytes bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(AtFirst, AStillIsTheWholeFrameInColourAsJpegOfQuality85) {
    const ScratchFolder folder;
    std::string path = folder.file("still.jpg");
    const cv::Mat frame = colours({96, 64});
    capture(path.data(), 0, 0, frame);
    cv::Mat blueFirst;
    cv::cvtColor(frame, blueFirst, cv::COLOR_RGB2BGR);
    Bytes expected;
    cv::imencode(".jpg", blueFirst, expected, {cv::IMWRITE_JPEG_QUALITY, 85});
    EXPECT_EQ(bytesOf(path), expected);
}

TEST(AtFirst, NoCameraStreams) {
    EXPECT_EQ(captureImage("never.jpg"), -1);
    int value = 7;
    EXPECT_EQ(GetVideoCtlParam(0, &value, &value, &value, &value), -1);
    EXPECT_EQ(value, 7);
}

TEST(AtFirst, NoFrameSizeIsKnown) {
    int width = 7;
    int height = 8;
    EXPECT_EQ(getFormatResolutionCount(0), 0);
    EXPECT_EQ(getCameraResolution(0, &width, &height), -2);
    EXPECT_EQ(width, 7);
    EXPECT_EQ(height, 8);
}

TEST(AtFirst, NoCodeHasBeenRead) {
    EXPECT_STREQ(RecogBarQrCode(-99), "");
}

} // namespace
} // namespace doccam::test
