// Pictures of sheets for the cleaning tests, and their comparison.
#pragma once

#include <gtest/gtest.h>
#include <opencv2/core/mat.hpp>

#include <cstdint>

namespace doccam::test {

inline const cv::Scalar kBlackDesk = cv::Scalar::all(0);

// A sheet of one colour at area of a black desk.
cv::Mat sheetOnDesk(cv::Size size, cv::Rect area, const cv::Scalar& sheet);

// Every sample from 0 to 255 at random.
cv::Mat noise(cv::Size size, std::uint64_t seed);

// A noisy dark desk with one to three bright shapes, large enough for a sheet or not, that may
// touch the edge or each other, specks around them, print and coloured strokes.
cv::Mat drawnScene(cv::Size size, std::uint64_t seed);

// Same size, type and pixels; otherwise it says where the first difference is.
testing::AssertionResult isSamePicture(const cv::Mat& actual, const cv::Mat& expected);

} // namespace doccam::test
