#include "scan/even_light.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <span>

namespace doccam::host {
namespace {

constexpr float kDark = 1; // grey levels of the sensor's black, whose ratios say nothing
constexpr float kStrongestGain = 1.6F; // beyond it not the light has changed but the scene

float medianGain(std::span<float> ratios) {
    const auto middle = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2);
    std::nth_element(ratios.begin(), middle, ratios.end());
    return std::clamp(*middle, 1 / kStrongestGain, kStrongestGain);
}

// The picture with each row brightened or darkened as most of its pixels say.
cv::Mat evened(const cv::Mat& reference, const cv::Mat& picture) {
    cv::Mat ratios;
    cv::divide(reference + kDark, picture + kDark, ratios);
    cv::Mat result(picture.size(), CV_32F);
    const auto width = static_cast<std::size_t>(picture.cols);
    for (int y = 0; y < picture.rows; ++y) {
        const float gain = medianGain({ratios.ptr<float>(y), width});
        const float* const from = picture.ptr<float>(y);
        std::transform(from, from + width, result.ptr<float>(y),
                       [gain](float level) { return level * gain; });
    }
    return result;
}

} // namespace

cv::Mat reducedGrey(const cv::Mat& frame) {
    const int factor = std::max(1, frame.cols / kWatchedWidth);
    const cv::Size size(frame.cols / factor, std::max(1, frame.rows / factor));
    cv::Mat small;
    cv::resize(
        frame(cv::Rect(0, 0, size.width * factor, std::min(size.height * factor, frame.rows))),
        small, size, 0, 0, cv::INTER_AREA);
    cv::cvtColor(small, small, cv::COLOR_RGB2GRAY);
    return small;
}

cv::Mat inLightOf(const cv::Mat& reference, const cv::Mat& picture) {
    cv::Mat known;
    cv::Mat seen;
    reference.convertTo(known, CV_32F);
    picture.convertTo(seen, CV_32F);
    const cv::Mat byRows = evened(known, seen);
    const cv::Mat byColumns = evened(known.t(), seen.t()).t();
    const bool rowsFit =
        cv::norm(byRows, known, cv::NORM_L1) <= cv::norm(byColumns, known, cv::NORM_L1);
    cv::Mat result;
    (rowsFit ? byRows : byColumns).convertTo(result, CV_8U);
    return result;
}

} // namespace doccam::host
