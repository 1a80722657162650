// What the host's settings ask of every still.
#pragma once

#include "base/frame_size.h"
#include "state/settings.h"

#include <opencv2/imgproc.hpp>

namespace doccam {

inline bool isOn(const std::atomic<int>& setting) {
    return setting.load(std::memory_order_relaxed) == 1;
}

// The page of a whole frame at the size that is only offered enlarged.
inline cv::Mat enlarged(const cv::Mat& page, const record::Settings& settings) {
    const int turns = settings.RotateAngle.load(std::memory_order_relaxed);
    const auto [width, height] = turned(kEnlargedSize, turns);
    cv::Mat larger;
    cv::resize(page, larger, {width, height}, 0, 0, cv::INTER_LINEAR);
    return larger;
}

} // namespace doccam
