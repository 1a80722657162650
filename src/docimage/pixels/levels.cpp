#include "docimage/pixels/levels.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>

namespace doccam {
namespace {

// A function of values: a loop that reads what row may overwrite would not vectorize.
void markRow(uchar* row, int width, uchar level) {
    for (int x = 0; x < width; ++x) {
        row[x] = row[x] > level ? 1 : 0;
    }
}

} // namespace

// Alternates between histograms: incrementing one count twice in a row stalls the processor.
void countLevels(const unsigned char* pixels, int count, Levels& levels) {
    constexpr int kTurns = 4;
    std::array<Levels, kTurns> turns{};
    int i = 0;
    for (; i + kTurns <= count; i += kTurns) {
        ++turns[0][pixels[i]];
        ++turns[1][pixels[i + 1]];
        ++turns[2][pixels[i + 2]];
        ++turns[3][pixels[i + 3]];
    }
    for (; i < count; ++i) {
        ++turns[0][pixels[i]];
    }
    for (const Levels& turn : turns) {
        addLevels(turn, levels);
    }
}

void addLevels(const Levels& more, Levels& levels) {
    std::transform(levels.begin(), levels.end(), more.begin(), levels.begin(), std::plus<>());
}

// Of equally good levels the lowest counts. The order of operations is OpenCV's: rounding decides.
int otsuLevel(const Levels& levels) {
    constexpr double kSmallestShare = std::numeric_limits<float>::epsilon();
    const double scale = 1.0 / std::accumulate(levels.begin(), levels.end(), 0);
    double mean = 0;
    for (int i = 0; i < kLevels; ++i) {
        mean += i * static_cast<double>(levels[static_cast<std::size_t>(i)]);
    }
    mean *= scale;
    double darkMean = 0;
    double darkShare = 0;
    double best = 0;
    int bestLevel = 0;
    for (int i = 0; i < kLevels; ++i) {
        const double share = levels[static_cast<std::size_t>(i)] * scale;
        darkMean *= darkShare;
        darkShare += share;
        const double brightShare = 1.0 - darkShare;
        if (std::min(darkShare, brightShare) < kSmallestShare ||
            std::max(darkShare, brightShare) > 1.0 - kSmallestShare) {
            continue;
        }
        darkMean = (darkMean + i * share) / darkShare;
        const double brightMean = (mean - darkShare * darkMean) / brightShare;
        const double contrast =
            darkShare * brightShare * (darkMean - brightMean) * (darkMean - brightMean);
        if (contrast > best) {
            best = contrast;
            bestLevel = i;
        }
    }
    return bestLevel;
}

void markBrightRegions(cv::Mat& grey, const Levels& levels) {
    const auto level = static_cast<uchar>(otsuLevel(levels));
    forEachRow(grey.rows, [&](int y) { markRow(grey.ptr(y), grey.cols, level); });
    grey.row(0).setTo(0);
    grey.row(grey.rows - 1).setTo(0);
    grey.col(0).setTo(0);
    grey.col(grey.cols - 1).setTo(0);
}

} // namespace doccam
