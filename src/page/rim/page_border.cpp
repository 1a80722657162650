// A page's borders, and how far inward its paper begins.
#include "page/rim/page_border.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::page {

namespace {

constexpr double kSamePaper = 27; // levels
constexpr int kPaperRun = 3;      // pixels of paper that end the rim
constexpr int kPenumbra = 2;      // pixels beside the sheet's edge that are still dark

} // namespace

bool PaperPage::isPaper(cv::Point pixel) const {
    const auto* samples = pixels.ptr<unsigned char>(pixel.y, pixel.x);
    for (int c = 0; c < pixels.channels(); ++c) {
        if (std::abs(samples[c] - ground[c]) > kSamePaper) {
            return false;
        }
    }
    return true;
}

void PaperPage::fill(cv::Point pixel) {
    auto* samples = pixels.ptr<unsigned char>(pixel.y, pixel.x);
    for (int c = 0; c < pixels.channels(); ++c) {
        samples[c] = cv::saturate_cast<unsigned char>(ground[c]);
    }
}

Border borderOf(const cv::Mat& page, bool level, bool far) {
    return {level, far, level ? page.cols : page.rows, level ? page.rows : page.cols};
}

int depthAt(const PaperPage& page, const Border& border, int along, int deepest) {
    int run = 0;
    for (int depth = 0; depth < deepest; ++depth) {
        run = page.isPaper(border.at(along, depth)) ? run + 1 : 0;
        if (run == kPaperRun) {
            return depth + 1 - kPaperRun;
        }
    }
    return deepest;
}

void fillInward(PaperPage& page, const Border& border, int along, double depth) {
    const int end = std::min(static_cast<int>(std::ceil(depth)) + kPenumbra, border.across);
    for (int inward = 0; inward < end; ++inward) {
        page.fill(border.at(along, inward));
    }
}

} // namespace doccam::page
