// The levels that part black from white on an evened page.
#include "page/paper/thresholds.h"

#include "base/shared_work.h"
#include "page/paper/tone_kernels.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace doccam::page {

namespace {

constexpr int kScale = 4;
constexpr int kWindow = 11;            // cells: wider than letters are thick
constexpr int kBeside = 3;             // cells: one on each side
constexpr float kFaintest = 20;        // how much darker than paper ink is at least
constexpr float kFaintestInNoise = 90; // where the paper is very noisy
constexpr float kNoiseShare = 2;       // as much more for each level of noise
constexpr float kDarkestPaper = 128;   // darker is ink, or a picture, throughout
constexpr float kDarkestLevel = 118;   // of what lies on paper
constexpr float kClear = 35; // between a level and the one tone of a fill, so that it has no specks
constexpr float kBelowMean = 14;      // of what surrounds it, where ink begins
constexpr float kFillShare = 0.33F;   // of the way from paper to ink, which narrow fills stay above
constexpr float kInkShare = 0.6F;     // of the way from paper to ink, at most
constexpr double kSurroundings = 1.6; // cells

// The brightest and the darkest pixel of each cell.
struct Extremes {
    cv::Mat brightest;
    cv::Mat darkest;
};

// The extremes of a row of cells.
void extremesOfRow(const cv::Mat& grey, int cellRow, std::vector<unsigned char>& brightest,
                   std::vector<unsigned char>& darkest, Extremes& extremes) {
    // The last row of cells reaches back where the page ends within it.
    const int first = std::max(std::min(cellRow * kScale, grey.rows - kScale), 0);
    const std::size_t stride = grey.rows < kScale ? 0 : grey.step[0];
    widestKernels<allToneKernels>().columnExtremes(grey.ptr<unsigned char>(first), stride,
                                                   grey.cols, brightest.data(), darkest.data());
    auto* bright = extremes.brightest.ptr<unsigned char>(cellRow);
    auto* dark = extremes.darkest.ptr<unsigned char>(cellRow);
    for (int x = 0; x < extremes.brightest.cols; ++x) {
        const auto* four = brightest.data() + std::ptrdiff_t{kScale} * x;
        bright[x] = std::max(std::max(four[0], four[1]), std::max(four[2], four[3]));
        four = darkest.data() + std::ptrdiff_t{kScale} * x;
        dark[x] = std::min(std::min(four[0], four[1]), std::min(four[2], four[3]));
    }
}

Extremes extremesOf(const cv::Mat& grey) {
    const cv::Size size((grey.cols + kScale - 1) / kScale, (grey.rows + kScale - 1) / kScale);
    Extremes extremes{cv::Mat(size, CV_8U), cv::Mat(size, CV_8U)};
    forEachStrip(Strips(size.height), [&](const cv::Range& rows, int) {
        // Columns past the page change nothing.
        std::vector<unsigned char> brightest(std::size_t{kScale} * size.width, 0);
        std::vector<unsigned char> darkest(std::size_t{kScale} * size.width, 255);
        for (int y = rows.start; y < rows.end; ++y) {
            extremesOfRow(grey, y, brightest, darkest, extremes);
        }
    });
    return extremes;
}

// The mean of each cell; of the last ones, which the page may end within, nearly.
cv::Mat meansOf(const cv::Mat& grey, cv::Size cells) {
    const cv::Size whole(grey.cols / kScale, grey.rows / kScale);
    cv::Mat means;
    if (whole.area() == 0) {
        cv::resize(grey, means, cells, 0, 0, cv::INTER_AREA);
        return means;
    }
    const cv::Rect seen(0, 0, whole.width * kScale, whole.height * kScale);
    cv::resize(grey(seen), means, whole, 0, 0, cv::INTER_AREA);
    cv::copyMakeBorder(means, means, 0, cells.height - whole.height, 0, cells.width - whole.width,
                       cv::BORDER_REPLICATE);
    return means;
}

// What surrounds a cell.
struct Surroundings {
    float paper; // the level without ink
    float fill;  // that of a fill beside it, if that is white, else the same
    float blank; // the darkest of a blank cell: less than paper where it is noisy
    float ink;   // the darkest of all
    float mean;
};

float levelOf(const Surroundings& around) {
    if (around.paper < kDarkestPaper) {
        return around.paper + kClear;
    }
    const float noise = std::max(around.paper - around.blank, 0.0F);
    const float faintest = std::min(kFaintest + kNoiseShare * noise, kFaintestInNoise);
    const float contrast = std::max(around.paper - around.ink, 0.0F);
    const float local = std::clamp(around.mean - kBelowMean, around.paper - kInkShare * contrast,
                                   around.paper - kFillShare * contrast);
    return std::max(std::min(local, around.fill - faintest),
                    std::min(kDarkestLevel, around.fill - kClear));
}

cv::Mat square(int side) {
    return cv::getStructuringElement(cv::MORPH_RECT, {side, side});
}

// Levels between cells must leave no lines along the edges of fills that turn white.
cv::Mat fillsBeside(const cv::Mat& paper) {
    cv::Mat fills;
    cv::erode(paper, fills, square(kBeside));
    paper.copyTo(fills, fills < kDarkestPaper);
    return fills;
}

} // namespace

Thresholds thresholds(const cv::Mat& grey) {
    const Extremes extremes = extremesOf(grey);
    cv::Mat paper;
    cv::Mat blank;
    cv::Mat ink;
    cv::Mat mean = meansOf(grey, extremes.darkest.size());
    cv::morphologyEx(extremes.brightest, paper, cv::MORPH_CLOSE, square(kWindow));
    const cv::Mat fill = fillsBeside(paper);
    cv::morphologyEx(extremes.darkest, blank, cv::MORPH_CLOSE, square(kWindow));
    cv::blur(blank, blank, {kWindow, kWindow});
    cv::erode(extremes.darkest, ink, square(kWindow));
    cv::blur(ink, ink, {kWindow, kWindow});
    cv::GaussianBlur(mean, mean, {}, kSurroundings);
    Thresholds found{cv::Mat(paper.size(), CV_16U), kScale};
    forEachStrip(Strips(paper.rows), [&](const cv::Range& rows, int) {
        for (int y = rows.start; y < rows.end; ++y) {
            const auto* papers = paper.ptr<unsigned char>(y);
            const auto* fills = fill.ptr<unsigned char>(y);
            const auto* blanks = blank.ptr<unsigned char>(y);
            const auto* inks = ink.ptr<unsigned char>(y);
            const auto* means = mean.ptr<unsigned char>(y);
            auto* levels = found.levels.ptr<std::uint16_t>(y);
            for (int x = 0; x < paper.cols; ++x) {
                levels[x] = static_cast<std::uint16_t>(
                    levelOf({static_cast<float>(papers[x]), static_cast<float>(fills[x]),
                             static_cast<float>(blanks[x]), static_cast<float>(inks[x]),
                             static_cast<float>(means[x])}));
            }
        }
    });
    return found;
}

} // namespace doccam::page
