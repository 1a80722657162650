#include "documents/paper/page_sizing.h"

#include "documents/paper/paper_names.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace doccam::host {
namespace {

constexpr Millimetres kA4{210, 297};

double proportionsOf(cv::Size pixels) {
    return static_cast<double>(pixels.width) / pixels.height;
}

SizedPage pageOf(cv::Size pixels, Millimetres size, Millimetres picture, DpiSource from) {
    const Density density = densityOf(pixels, picture);
    return {size, (density.across + density.down) / 2, from, picture};
}

SizedPage filledPage(cv::Size pixels, Millimetres size, DpiSource from) {
    return pageOf(pixels, size, size, from);
}

// As large as the paper can hold it whole.
Millimetres fitted(cv::Size pixels, Millimetres paper) {
    const double scale = std::min(paper.width / pixels.width, paper.height / pixels.height);
    return {pixels.width * scale, pixels.height * scale};
}

double stretch(cv::Size pixels, Millimetres paper) {
    const double ratio = proportionsOf(pixels) * paper.height / paper.width;
    return std::max(ratio, 1 / ratio);
}

SizedPage pageOnPaper(cv::Size pixels, Millimetres paper) {
    const Millimetres size = turnedLike(proportionsOf(pixels), paper);
    const bool fills = stretch(pixels, size) <= kMaximumStretch;
    return pageOf(pixels, size, fills ? size : fitted(pixels, size), DpiSource::kPaper);
}

// Of the A series, which have the same proportions, A4.
SizedPage guessedPage(cv::Size pixels) {
    const double proportions = proportionsOf(pixels);
    Millimetres nearest = turnedLike(proportions, kA4);
    for (const NamedPaper& named : namedPapers()) {
        const Millimetres paper = turnedLike(proportions, named.size);
        // The A series differ by the rounding of their sides alone.
        constexpr double kSame = 0.005;
        if (stretch(pixels, paper) < stretch(pixels, nearest) - kSame) {
            nearest = paper;
        }
    }
    if (stretch(pixels, nearest) <= kMaximumStretch) {
        return filledPage(pixels, nearest, DpiSource::kGuess);
    }
    return filledPage(pixels, fitted(pixels, turnedLike(proportions, kA4)), DpiSource::kGuess);
}

bool isUsualFiller(double dpi) {
    constexpr std::array<double, 2> kFillers{72, 96};
    return std::any_of(kFillers.begin(), kFillers.end(),
                       [dpi](double filler) { return std::abs(dpi - filler) < 0.1; });
}

bool isPossible(double dpi) {
    return dpi >= kLowestDpi && dpi <= kHighestDpi;
}

bool isPageSide(double millimetres) {
    return millimetres >= kShortestSide && millimetres <= kLongestSide;
}

} // namespace

std::optional<Millimetres> credibleSize(cv::Size pixels, const std::optional<Density>& density) {
    constexpr double kMostUneven = 3; // coarse faxes have 204 by 98
    if (!density || !isPossible(density->across) || !isPossible(density->down) ||
        (isUsualFiller(density->across) && isUsualFiller(density->down)) ||
        std::max(density->across, density->down) >
            kMostUneven * std::min(density->across, density->down)) {
        return std::nullopt;
    }
    const Millimetres size = sizeAt(pixels, *density);
    return isPageSide(size.width) && isPageSide(size.height) ? std::optional(size) : std::nullopt;
}

SizedPage sizePage(cv::Size pixels, const SizeClues& clues) {
    if (clues.options.dpi) {
        const double dpi = *clues.options.dpi;
        return filledPage(pixels, sizeAt(pixels, {dpi, dpi}), DpiSource::kOption);
    }
    if (clues.options.paper) {
        return pageOnPaper(pixels, *clues.options.paper);
    }
    if (clues.calibrated) {
        return filledPage(pixels, *clues.calibrated, DpiSource::kCalibration);
    }
    if (clues.inFile) {
        return filledPage(pixels, *clues.inFile, DpiSource::kFile);
    }
    return guessedPage(pixels);
}

} // namespace doccam::host
