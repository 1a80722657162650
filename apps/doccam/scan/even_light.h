// Pictures freed of changes of light, so that only what moved differs.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::host {

// Small enough to compare in every frame, large enough to show a finger at the edge.
inline constexpr int kWatchedWidth = 320;

// The red-first frame as a grey picture, kWatchedWidth to twice as many pixels wide; a smaller
// frame keeps its size.
cv::Mat reducedGrey(const cv::Mat& frame);

// The picture in the light of reference, an 8-bit grey picture of the same size: each row is
// brightened or darkened as most of its pixels say, against bands of flickering lamps, which lie
// along the sensor's rows; or each column, where that fits better, as in frames that were turned.
cv::Mat inLightOf(const cv::Mat& reference, const cv::Mat& picture);

} // namespace doccam::host
