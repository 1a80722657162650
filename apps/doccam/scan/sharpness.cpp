#include "scan/sharpness.h"

#include <opencv2/imgproc.hpp>

#include <cstdlib>

namespace doccam::host {
namespace {

constexpr int kRowStep = 8; // every eighth row says enough
constexpr int kChannels = 3;
constexpr int kGreen = 1;

} // namespace

double sharpnessOf(const cv::Mat& frame) {
    std::int64_t curvature = 0;
    std::int64_t level = 0;
    for (int y = 1; y + 1 < frame.rows; y += kRowStep) {
        const unsigned char* above = frame.ptr(y - 1) + kGreen;
        const unsigned char* row = frame.ptr(y) + kGreen;
        const unsigned char* below = frame.ptr(y + 1) + kGreen;
        int rowCurvature = 0;
        int rowLevel = 0;
        for (int x = kChannels; x + kChannels < frame.cols * kChannels; x += kChannels) {
            const int around = row[x - kChannels] + row[x + kChannels] + above[x] + below[x];
            rowCurvature += std::abs(4 * row[x] - around);
            rowLevel += row[x];
        }
        curvature += rowCurvature;
        level += rowLevel;
    }
    return level > 0 ? static_cast<double>(curvature) / static_cast<double>(level) : 0;
}

} // namespace doccam::host
