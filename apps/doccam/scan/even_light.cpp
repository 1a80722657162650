#include "scan/even_light.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <vector>

namespace doccam::host {
namespace {

constexpr float kDark = 1; // grey levels of the sensor's black, whose ratios say nothing
constexpr float kStrongestGain = 1.6F; // beyond it not the light has changed but the scene

float medianGain(const cv::Mat& ratios) {
    std::vector<float> values(ratios.begin<float>(), ratios.end<float>());
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return std::clamp(*middle, 1 / kStrongestGain, kStrongestGain);
}

enum class Along { kRows, kColumns };

// The picture with each line brightened or darkened as most of its pixels say.
cv::Mat evened(const cv::Mat& reference, const cv::Mat& picture, Along along) {
    cv::Mat ratios;
    cv::divide(reference + kDark, picture + kDark, ratios);
    cv::Mat result = picture.clone();
    const int lines = along == Along::kRows ? picture.rows : picture.cols;
    for (int i = 0; i < lines; ++i) {
        cv::Mat line = along == Along::kRows ? result.row(i) : result.col(i);
        line *= medianGain(along == Along::kRows ? ratios.row(i) : ratios.col(i));
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
    const cv::Mat byRows = evened(known, seen, Along::kRows);
    const cv::Mat byColumns = evened(known, seen, Along::kColumns);
    const bool rowsFit =
        cv::norm(byRows, known, cv::NORM_L1) <= cv::norm(byColumns, known, cv::NORM_L1);
    cv::Mat result;
    (rowsFit ? byRows : byColumns).convertTo(result, CV_8U);
    return result;
}

} // namespace doccam::host
