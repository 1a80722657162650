#include "base/slack_image.h"

#include "base/frame_size.h"
#include "base/pixel.h"

#include <opencv2/core.hpp>

#include <limits>

namespace doccam {

// A column of pixels, which is shortened and becomes rows in place: unlike a submatrix, that hides
// the slack from OpenCV's border functions.
cv::Mat makeSlackImage(int rows, int columns) {
    constexpr int kSlackPixels = kImageSlack / kChannels;
    const std::int64_t pixels = FrameSize{columns, rows}.area();
    CV_Assert(rows > 0 && columns > 0 && pixels <= std::numeric_limits<int>::max() - kSlackPixels);
    // Black instead of uninitialised: the first frame may be undecodable.
    cv::Mat image(static_cast<int>(pixels) + kSlackPixels, 1, CV_8UC3, cv::Scalar::all(0));
    image.resize(static_cast<std::size_t>(pixels));
    return image.reshape(0, rows);
}

} // namespace doccam
