#include "documents/layers/solid_fills.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace doccam::host {
namespace {

constexpr std::size_t kMaximumFills = 12;
constexpr int kFlat = 20;             // levels across three cells
constexpr int kPaper = 240;           // in all channels: paler is paper
constexpr double kDark = 150;         // grey
constexpr double kEven = 9;           // standard deviation
constexpr double kSmallestFill = 1.2; // millimetres
constexpr double kLargestRemains = 2; // millimetres
constexpr double kSameColour = 8;     // levels
constexpr int kEdge = 3;              // cells from the flat inside to past the edge
constexpr double kLeastStep = 12;     // levels across the edge

cv::Mat flatAndPrinted(const cv::Mat& ground, const cv::Mat& pictures) {
    cv::Mat range;
    cv::morphologyEx(ground, range, cv::MORPH_GRADIENT, squareKernel(3));
    cv::Mat paper;
    cv::inRange(ground, cv::Scalar::all(kPaper), cv::Scalar::all(255), paper);
    return (largestChannel(range) <= kFlat) & ~paper & ~pictures;
}

double stepOf(const SolidFill& fill, int channel) {
    return std::abs(fill.colour[channel] - fill.around[channel]);
}

// Measures the fill. Whether all of it has one colour, and its edge is sharp.
bool isSolid(SolidFill& fill, const cv::Mat& ground) {
    cv::Scalar deviation;
    cv::meanStdDev(ground(fill.box), fill.colour, deviation, fill.inside);
    cv::Mat edge;
    cv::dilate(fill.inside, edge, squareKernel(2 * kEdge - 1));
    cv::Mat outer;
    cv::dilate(fill.inside, outer, squareKernel(2 * kEdge + 1));
    fill.around = cv::mean(ground(fill.box), outer & ~edge);
    for (int c = 1; c < ground.channels(); ++c) {
        fill.channel = stepOf(fill, c) > stepOf(fill, fill.channel) ? c : fill.channel;
    }
    return std::max({deviation[0], deviation[1], deviation[2]}) < kEven &&
           stepOf(fill, fill.channel) > kLeastStep;
}

bool isDark(const SolidFill& fill, int channels) {
    const cv::Scalar& colour = fill.colour;
    return (channels == 1 ? colour[0] : (colour[0] + 2 * colour[1] + colour[2]) / 4) < kDark;
}

// The ink of that colour; of the nearest one if there are enough others.
Ink& inkFor(const cv::Scalar& colour, std::vector<Ink>& inks, cv::Size size) {
    const cv::Vec3d wanted(colour[0], colour[1], colour[2]);
    const auto apart = [&](const Ink& ink) { return cv::norm(cv::Vec3d(ink.colour) - wanted); };
    const auto nearest =
        std::min_element(inks.begin(), inks.end(), [&](const Ink& one, const Ink& other) {
            return apart(one) < apart(other);
        });
    if (nearest != inks.end() && (apart(*nearest) < kSameColour || inks.size() == kMaximumFills)) {
        return *nearest;
    }
    inks.push_back({cv::Mat::zeros(size, CV_8U), cv::Vec3b(wanted)});
    return inks.back();
}

// The parts of a page that a fill's box covers: of the page itself, and of masks.
struct Places {
    cv::Rect pixels;
    cv::Rect target; // may reach past the mask
    cv::Rect inMask;

    Places(const SolidFill& fill, int cell, cv::Size page, cv::Size mask) {
        pixels = cv::Rect(fill.box.tl() * cell, fill.box.size() * cell) & cv::Rect({}, page);
        const double scale = static_cast<double>(mask.width) / page.width;
        target = {cvRound(pixels.x * scale), cvRound(pixels.y * scale),
                  std::max(1, cvRound(pixels.width * scale)),
                  std::max(1, cvRound(pixels.height * scale))};
        inMask = target & cv::Rect({}, mask);
    }

    cv::Mat fine(const cv::Mat& grid, int interpolation) const {
        cv::Mat large;
        cv::resize(grid, large, target.size(), 0, 0, interpolation);
        return large(cv::Rect({}, inMask.size()));
    }
};

cv::Mat reachOf(const SolidFill& fill) {
    cv::Mat reach;
    cv::dilate(fill.inside, reach, squareKernel(2 * kEdge - 1));
    return reach;
}

// Sets the fill in mask, up to its edge, where a pixel is nearer to its colour than to what is
// around.
void lay(const SolidFill& fill, const cv::Mat& page, int cell, cv::Mat& mask) {
    const Places places(fill, cell, page.size(), mask.size());
    cv::Mat channel;
    cv::extractChannel(page(places.pixels), channel, fill.channel);
    channel = places.fine(channel, cv::INTER_LINEAR);
    const double middle = (fill.colour[fill.channel] + fill.around[fill.channel]) / 2;
    const bool darker = fill.colour[fill.channel] < fill.around[fill.channel];
    const cv::Mat near = darker ? cv::Mat(channel < middle) : cv::Mat(channel > middle);
    mask(places.inMask) |= (near & places.fine(reachOf(fill), cv::INTER_NEAREST)) |
                           places.fine(fill.inside, cv::INTER_NEAREST);
}

} // namespace

std::vector<SolidFill> solidFills(const CoarsePage& coarse, const cv::Mat& ground,
                                  const cv::Mat& pictures) {
    cv::Mat labels;
    cv::Mat stats;
    cv::Mat centres;
    const int count = cv::connectedComponentsWithStats(flatAndPrinted(ground, pictures), labels,
                                                       stats, centres, 4, CV_32S);
    const int smallest = oddCells(coarse, kSmallestFill);
    const int remains = oddCells(coarse, kLargestRemains);
    const int margin = kEdge + remains;
    std::vector<SolidFill> fills;
    for (int label = 1; label < count; ++label) {
        const auto stat = [&](int which) { return stats.at<int>(label, which); };
        if (stat(cv::CC_STAT_AREA) < smallest * smallest) {
            continue;
        }
        const cv::Rect box(stat(cv::CC_STAT_LEFT) - margin, stat(cv::CC_STAT_TOP) - margin,
                           stat(cv::CC_STAT_WIDTH) + 2 * margin,
                           stat(cv::CC_STAT_HEIGHT) + 2 * margin);
        SolidFill fill{box & cv::Rect({}, ground.size()), {}, {}, {}};
        fill.inside = labels(fill.box) == label;
        if (isSolid(fill, ground)) {
            // With what light print left there.
            cv::morphologyEx(fill.inside, fill.inside, cv::MORPH_CLOSE, squareKernel(remains));
            fills.push_back(fill);
        }
    }
    // What is printed on a fill is smaller, and laid on it later.
    std::stable_sort(fills.begin(), fills.end(), [](const SolidFill& one, const SolidFill& other) {
        return one.box.area() > other.box.area();
    });
    return fills;
}

FilledCells cellsOf(const std::vector<SolidFill>& fills, const cv::Mat& ground) {
    const cv::Size cells = ground.size();
    FilledCells filled{cv::Mat::zeros(cells, CV_8U), cv::Mat::zeros(cells, CV_8U),
                       cv::Mat::zeros(cells, CV_8U)};
    for (const SolidFill& fill : fills) {
        const cv::Mat reach = reachOf(fill);
        filled.covered(fill.box) |= reach;
        if (isDark(fill, ground.channels())) {
            filled.darkCovered(fill.box) |= reach;
            filled.darkInside(fill.box) |= fill.inside;
        }
    }
    return filled;
}

std::vector<Ink> inksOf(const std::vector<SolidFill>& fills, const cv::Mat& page,
                        const CoarsePage& coarse, cv::Size size) {
    std::vector<Ink> inks;
    for (const SolidFill& fill : fills) {
        lay(fill, page, coarse.factor, inkFor(fill.colour, inks, size).mask);
    }
    return inks;
}

} // namespace doccam::host
