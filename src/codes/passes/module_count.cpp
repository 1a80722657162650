#include "codes/passes/module_count.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace doccam::codes {
namespace {

constexpr int kLines = 16;

int levelAt(const cv::Mat& grey, cv::Point2d place) {
    const int x = std::clamp(cvRound(place.x), 0, grey.cols - 1);
    const int y = std::clamp(cvRound(place.y), 0, grey.rows - 1);
    return grey.at<unsigned char>(y, x);
}

// Changes that go through a good part of the line's contrast.
int changesAlong(const cv::Mat& grey, cv::Point2d from, cv::Point2d to) {
    constexpr int kLongest = 1024; // samples
    const int count = std::clamp(cvRound(cv::norm(to - from)), 2, kLongest);
    std::vector<int> levels;
    for (int i = 0; i < count; ++i) {
        levels.push_back(levelAt(grey, from + (to - from) * (i / (count - 1.0))));
    }
    const auto [darkest, lightest] = std::minmax_element(levels.begin(), levels.end());
    const int contrast = *lightest - *darkest;
    const int middle = (*lightest + *darkest) / 2;
    constexpr int kNoise = 12;
    int changes = 0;
    bool dark = levels[0] < middle;
    for (const int level : levels) {
        const int beyond = dark ? level - middle : middle - level;
        if (contrast > kNoise && beyond > contrast / 8) {
            dark = !dark;
            ++changes;
        }
    }
    return changes;
}

// The mean over lines from one side to the other.
double changesBetween(const cv::Mat& grey, const Corners& place, std::size_t first) {
    const cv::Point2d start = place[first];
    const cv::Point2d along = place[(first + 1) % 4] - start;
    const cv::Point2d aside = place[(first + 3) % 4] - start;
    double sum = 0;
    for (int line = 0; line < kLines; ++line) {
        const cv::Point2d from = start + aside * ((line + 0.5) / kLines);
        sum += changesAlong(grey, from, from + along);
    }
    return sum / kLines;
}

} // namespace

bool hasModules(const cv::Mat& grey, const LikelyCode& likely) {
    constexpr double kBars = 10;
    constexpr double kModules = 4;
    const double across = changesBetween(grey, likely.place, 0);
    return likely.bars ? across >= kBars
                       : std::min(across, changesBetween(grey, likely.place, 1)) >= kModules;
}

} // namespace doccam::codes
