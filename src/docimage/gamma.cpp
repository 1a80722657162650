// Lifting dark samples by a gamma curve.
#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>

#include <cmath>

namespace {

// The curve in single precision, entry by entry.
cv::Mat curve(float gamma) {
    constexpr int kLevels = 256;
    cv::Mat table(1, kLevels, CV_8UC1);
    for (int i = 0; i < kLevels; ++i) {
        const auto level = static_cast<float>(i / 255.0);
        table.at<uchar>(i) = cv::saturate_cast<uchar>(std::pow(level, gamma) * 255.0F);
    }
    return table;
}

} // namespace

void GammaCorrection(cv::Mat& src, cv::Mat& dst, float fGamma) {
    dst = src.clone();
    if (!dst.empty() && (dst.type() == CV_8UC1 || dst.type() == CV_8UC3)) {
        cv::LUT(dst, curve(fGamma), dst);
    }
}
