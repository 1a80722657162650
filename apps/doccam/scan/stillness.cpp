#include "scan/stillness.h"

#include "scan/even_light.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <vector>

namespace doccam::host {
namespace {

constexpr int kBlock = 8;              // pixels
constexpr double kClearChange = 4;     // grey levels, of a block's mean change
constexpr double kNoiseFactor = 1.5;   // a block's mean change by noise alone is 1.1 deviations
constexpr double kMovingShare = 0.003; // of the blocks: a finger at the edge of the picture
constexpr double kSlow = 0.02;         // of a running mean, the part of the newest picture
constexpr double kQuick = 0.1;
constexpr double kRestless = 0.25;
constexpr double kRestlessShare = 0.08; // of the blocks: more than a hand at the edge
constexpr double kFlickeringShare = 0.4;
constexpr double kFlickeringLevel = 5; // grey levels, of most blocks' change
constexpr double kLoudest = 12;        // grey levels of noise; beyond it the picture moves
constexpr double kEvenDeviation = 8;   // grey levels, for an empty desk
constexpr double kDarkLevel = 24;
constexpr double kBrightShare = 0.02; // of the pixels, the brightest ones

double shareOf(const cv::Mat& blocks) {
    return static_cast<double>(cv::countNonZero(blocks)) / static_cast<double>(blocks.total());
}

// CV_32F, the mean change of each block.
cv::Mat blockChanges(const cv::Mat& one, const cv::Mat& other) {
    cv::Mat differences;
    cv::absdiff(one, other, differences);
    differences.convertTo(differences, CV_32F);
    const cv::Size blocks(std::max(1, one.cols / kBlock), std::max(1, one.rows / kBlock));
    cv::Mat changes;
    cv::resize(differences, changes, blocks, 0, 0, cv::INTER_AREA);
    return changes;
}

// The value that this part of the values exceeds.
double upperLevel(cv::Mat values, double part) {
    cv::Mat sorted;
    cv::sort(values.clone().reshape(1, 1), sorted, cv::SORT_EVERY_ROW | cv::SORT_DESCENDING);
    const auto place = static_cast<int>(part * (sorted.cols - 1));
    return sorted.depth() == CV_8U ? sorted.at<std::uint8_t>(place)
                                   : static_cast<double>(sorted.at<float>(place));
}

} // namespace

bool showsSomething(const cv::Mat& grey) {
    cv::Scalar mean;
    cv::Scalar deviation;
    cv::meanStdDev(grey, mean, deviation);
    return deviation[0] > kEvenDeviation;
}

bool isDark(const cv::Mat& grey) {
    return upperLevel(grey, kBrightShare) < kDarkLevel;
}

// A block's usual change is that of most blocks: noise, and what is left of the light's change.
void Stillness::measure(const cv::Mat& grey) {
    const cv::Mat changes = blockChanges(inLightOf(previous_, grey), previous_);
    const double usual = std::min(upperLevel(changes, 0.5), kLoudest);
    noise_ = noise_ <= 0 ? usual : noise_ + kQuick * (usual - noise_);
    cv::Mat changed = changes > kClearChange + kNoiseFactor * noise_;
    stir_ += kQuick * (shareOf(changed) - stir_);
    if (restless_.size() != changed.size()) {
        restless_ = cv::Mat::zeros(changed.size(), CV_32F);
    }
    // A sheet on its way says nothing about what keeps moving.
    if (shareOf(changed) <= kRestlessShare) {
        changed.convertTo(changed, CV_32F, 1.0 / 255);
        cv::accumulateWeighted(changed, restless_, kSlow);
    }
}

bool Stillness::isCalm(const cv::Mat& changed) const {
    if (shareOf(changed) <= kMovingShare) {
        return true;
    }
    const cv::Mat restless = restless_ > kRestless;
    cv::Mat around;
    cv::dilate(restless, around, cv::Mat());
    return shareOf(restless) <= kRestlessShare && shareOf(changed & ~around) <= kMovingShare;
}

// Compares with the first picture of the rest, not the previous one, or a slow hand would appear at
// rest.
int Stillness::see(const cv::Mat& grey) {
    const bool first = previous_.size() != grey.size();
    if (!first) {
        measure(grey);
    }
    const bool calm = !first && isCalm(blockChanges(inLightOf(rest_, grey), rest_) >
                                       kClearChange + kNoiseFactor * noise_);
    calm_ = calm ? std::min(calm_ + 1, kCalmFrames) : 0;
    if (!calm) {
        rest_ = grey.clone();
    }
    previous_ = grey.clone();
    return calm_;
}

Unrest Stillness::unrest() const {
    if (isDark(previous_)) {
        return Unrest::kDark;
    }
    return stir_ > kFlickeringShare || noise_ > kFlickeringLevel ? Unrest::kFlickering
                                                                 : Unrest::kMoving;
}

} // namespace doccam::host
