#include "scene/desks/textures.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::virtualcam {

cv::Mat smoothNoise(cv::Size pixels, cv::Size2d cell, cv::RNG& random) {
    const cv::Size cells(std::max(4, cvCeil(pixels.width / std::max(cell.width, 1.0))),
                         std::max(4, cvCeil(pixels.height / std::max(cell.height, 1.0))));
    cv::Mat small(cells, CV_32F);
    random.fill(small, cv::RNG::NORMAL, 0, 1);
    cv::Mat noise;
    cv::resize(small, noise, pixels, 0, 0, cv::INTER_CUBIC);
    return noise;
}

cv::Mat coloured(const cv::Mat& pattern, const cv::Scalar& colour, const cv::Scalar& grain) {
    cv::Mat channels[3];
    for (int i = 0; i < 3; ++i) {
        pattern.convertTo(channels[i], CV_8U, grain[i], colour[i]);
    }
    cv::Mat picture;
    cv::merge(channels, 3, picture);
    return picture;
}

} // namespace doccam::virtualcam
