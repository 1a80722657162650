// The levels that part black from white on an evened page.
#include "page/paper/thresholds.h"

#include "base/shared_work.h"
#include "page/paper/tone_kernels.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace doccam::page {

namespace {

constexpr int kScale = 4;
constexpr int kWindow = 11;            // cells: wider than letters are thick
constexpr float kNoise = 40;           // if ink and paper differ by less it is no ink
constexpr float kNoiseStep = 60;       // how much darker than paper a pixel has to be then
constexpr float kDarkestPaper = 118;   // darker is ink, whatever is around
constexpr float kInkShare = 0.42F;     // of the way from paper to ink
constexpr float kReversedShare = 0.6F; // the same where letters are white

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
        bright[x] = std::max(std::max(brightest[4 * x], brightest[4 * x + 1]),
                             std::max(brightest[4 * x + 2], brightest[4 * x + 3]));
        dark[x] = std::min(std::min(darkest[4 * x], darkest[4 * x + 1]),
                           std::min(darkest[4 * x + 2], darkest[4 * x + 3]));
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

// paper: the level without ink; ink: the darkest around; mean: of all around.
float levelOf(float paper, float ink, float mean) {
    const float contrast = paper - ink;
    const float brightShare = (mean - ink) / std::max(contrast, 1.0F);
    const float reversed = std::clamp((0.5F - brightShare) * 5, 0.0F, 1.0F);
    const float share = kInkShare + (kReversedShare - kInkShare) * reversed;
    const float faint = kNoiseStep - std::max(contrast - kNoise, 0.0F) * 0.3F;
    return std::max(paper - std::max(contrast * share, faint), kDarkestPaper);
}

} // namespace

Thresholds thresholds(const cv::Mat& grey) {
    const Extremes extremes = extremesOf(grey);
    const cv::Mat square = cv::getStructuringElement(cv::MORPH_RECT, {kWindow, kWindow});
    cv::Mat paper;
    cv::Mat ink;
    cv::Mat mean;
    cv::morphologyEx(extremes.brightest, paper, cv::MORPH_CLOSE, square);
    cv::erode(extremes.darkest, ink, square);
    cv::blur(ink, ink, {kWindow, kWindow});
    cv::addWeighted(extremes.brightest, 0.5, extremes.darkest, 0.5, 0, mean);
    cv::blur(mean, mean, {kWindow, kWindow});
    Thresholds found{cv::Mat(paper.size(), CV_16U), kScale};
    for (int y = 0; y < paper.rows; ++y) {
        for (int x = 0; x < paper.cols; ++x) {
            found.levels.at<std::uint16_t>(y, x) = static_cast<std::uint16_t>(
                levelOf(paper.at<unsigned char>(y, x), ink.at<unsigned char>(y, x),
                        mean.at<unsigned char>(y, x)));
        }
    }
    return found;
}

} // namespace doccam::page
