// Pictures compared to the byte.
#pragma once

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

namespace doccam::test {

// Same size, type and pixels; otherwise names the first difference.
testing::AssertionResult isSamePicture(const cv::Mat& actual, const cv::Mat& expected);

} // namespace doccam::test
