// Pictures of sheets for the cleaning tests.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstdint>

namespace doccam::test {

inline const cv::Scalar kBlackDesk = cv::Scalar::all(0);
inline const cv::Scalar kPaper = cv::Scalar::all(200);
inline const cv::Scalar kWhite = cv::Scalar::all(255);

// A small picture and the sheet in it.
inline const cv::Size kSize(300, 220);
inline const cv::Rect kSheet(20, 30, 240, 150);

// A sheet of one colour at area of a black desk.
cv::Mat sheetOnDesk(cv::Size size, cv::Rect area, const cv::Scalar& sheet);

// Every sample from 0 to 255 at random.
cv::Mat noise(cv::Size size, std::uint64_t seed);

// A noisy dark desk with one to three bright shapes of any size, which may touch the edge or each
// other, and specks, print and coloured strokes.
cv::Mat drawnScene(cv::Size size, std::uint64_t seed);

} // namespace doccam::test
