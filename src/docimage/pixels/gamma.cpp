// Lifting dark samples by a gamma curve.
#include "docimage/pixels/gamma_curve.h"

#include <doccam/doccam.hpp>

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

} // namespace doccam

void GammaCorrection(cv::Mat& src, cv::Mat& dst, float fGamma) {
    dst = src.clone();
    if (!dst.empty() && (dst.type() == CV_8UC1 || dst.type() == CV_8UC3)) {
        auto curve = doccam::gammaCurve(fGamma);
        const cv::Mat tableView(1, static_cast<int>(curve.size()), CV_8UC1, curve.data());
        cv::LUT(dst, tableView, dst);
    }
}
