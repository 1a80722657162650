// Pictures compared to the byte.
#pragma once

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

namespace doccam::test {

// Same size, type and pixels; otherwise it says where the first difference is.
testing::AssertionResult isSamePicture(const cv::Mat& actual, const cv::Mat& expected);

} // namespace doccam::test
