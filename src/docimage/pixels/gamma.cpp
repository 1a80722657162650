#include "docimage/pixels/gamma.h"

#include <opencv2/core.hpp>

#include <cmath>

namespace doccam {

// In single precision, entry by entry.
std::array<unsigned char, 256> gammaCurve(float gamma) {
    std::array<unsigned char, 256> curve{};
    for (std::size_t i = 0; i < curve.size(); ++i) {
        const auto level = static_cast<float>(static_cast<double>(i) / 255.0);
        curve[i] = cv::saturate_cast<uchar>(std::pow(level, gamma) * 255.0F);
    }
    return curve;
}

cv::Mat gammaCorrected(const cv::Mat& picture, float gamma) {
    cv::Mat corrected = picture.clone();
    if (!corrected.empty() && (corrected.type() == CV_8UC1 || corrected.type() == CV_8UC3)) {
        auto curve = gammaCurve(gamma);
        const cv::Mat tableView(1, static_cast<int>(curve.size()), CV_8UC1, curve.data());
        cv::LUT(corrected, tableView, corrected);
    }
    return corrected;
}

} // namespace doccam
