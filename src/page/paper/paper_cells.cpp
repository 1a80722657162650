// Which cells of a reduced page could be paper, and how they hang together.
#include "page/paper/paper_cells.h"

#include "page/paper/reduced_page.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace doccam::page {

namespace {

constexpr int kNear = 1;                // an edge is sharp if its step over 2 * kNear
constexpr int kFar = 3;                 // exceeds the slopes from there to kFar
constexpr int kSteep = 5;               // levels: folds beside their edge, and no pale fill
constexpr int kSmallestRegion = 12;     // cells
constexpr double kDarkestPaper = 36;    // of 255
constexpr double kSmallestPaper = 0.02; // of the page
constexpr int kWhite = 255;

// 255 for samples between which, far, near, near and far across them, an edge is sharp. Soft ones
// are shadows; noise takes a level or two. count samples, in 16 bits so that vectors hold many.
void markSharp(const unsigned char* farBefore, const unsigned char* before,
               const unsigned char* after, const unsigned char* farAfter, int count,
               unsigned char* __restrict edge) {
    for (int i = 0; i < count; ++i) {
        const auto step = static_cast<std::int16_t>(std::abs(after[i] - before[i]));
        const auto slope = static_cast<std::int16_t>(
            std::max(std::abs(before[i] - farBefore[i]), std::abs(farAfter[i] - after[i])));
        const auto level = static_cast<std::int16_t>(96 + std::max(before[i], after[i]));
        const auto excess =
            static_cast<std::int16_t>((2 * step - (slope > kSteep ? 3 : 2) * slope) * 32);
        edge[i] |= excess > level ? kWhite : 0;
    }
}

// 255 in the samples where a sharp edge, upright or level, passes. Means along the edge take noise
// out.
cv::Mat sharpEdges(const cv::Mat& picture) {
    cv::Mat bordered;
    cv::copyMakeBorder(picture, bordered, kFar, kFar, kFar, kFar, cv::BORDER_REPLICATE);
    cv::Mat alongColumns;
    cv::Mat alongRows;
    cv::blur(bordered, alongColumns, {1, 3});
    cv::blur(bordered, alongRows, {3, 1});
    cv::Mat edges = cv::Mat::zeros(picture.size(), picture.type());
    const int channels = picture.channels();
    const int count = picture.cols * channels;
    for (int y = 0; y < picture.rows; ++y) {
        auto* edge = edges.ptr<unsigned char>(y);
        const auto along = [&](int x) { return alongColumns.ptr<unsigned char>(y + kFar, x); };
        markSharp(along(0), along(kFar - kNear), along(kFar + kNear), along(2 * kFar), count, edge);
        const auto at = [&](int offset) {
            return alongRows.ptr<unsigned char>(y + kFar + offset, kFar);
        };
        markSharp(at(-kFar), at(-kNear), at(kNear), at(kFar), count, edge);
    }
    return edges;
}

// 255 for cells in which some sample is 255.
cv::Mat halvedMask(const cv::Mat& mask) {
    cv::Mat empty;
    cv::inRange(halved(mask), cv::Scalar::all(0), cv::Scalar::all(0), empty);
    return ~empty;
}

// Cells in which light was too strong, or which a rectifier filled, tell nothing.
cv::Mat blownOut(const cv::Mat& colour) {
    cv::Mat blown;
    cv::inRange(colour, cv::Scalar::all(kWhite), cv::Scalar::all(kWhite), blown);
    return blown;
}

void measure(Region& region, const Cells& cells) {
    const cv::Mat inside = cells.labels(region.box) == region.label;
    const cv::Mat colour = cells.colour(region.box);
    cv::Mat grey;
    if (colour.channels() == 1) {
        grey = colour;
    } else {
        cv::cvtColor(colour, grey, cv::COLOR_BGR2GRAY);
    }
    const double mean = cv::mean(grey, inside)[0];
    region.brightness = cv::mean(grey, inside & (grey >= mean))[0];
    if (colour.channels() == 1) {
        return;
    }
    const cv::Scalar sums = cv::mean(colour, inside);
    const auto [least, highest] = std::minmax({sums[0], sums[1], sums[2]});
    region.saturation = (highest - least) / std::max(highest, 1.0);
}

void findRegions(Cells& cells, const cv::Mat& open) {
    cv::Mat statistics;
    cv::Mat centroids;
    const int count =
        cv::connectedComponentsWithStats(open, cells.labels, statistics, centroids, 4, CV_32S);
    for (int label = 1; label < count; ++label) {
        const int* const row = statistics.ptr<int>(label);
        Region region{.label = label,
                      .area = row[cv::CC_STAT_AREA],
                      .box = {row[cv::CC_STAT_LEFT], row[cv::CC_STAT_TOP], row[cv::CC_STAT_WIDTH],
                              row[cv::CC_STAT_HEIGHT]}};
        if (region.area >= kSmallestRegion) {
            measure(region, cells);
            cells.regions.push_back(region);
        }
    }
}

} // namespace

Cells paperCells(const cv::Mat& reduced) {
    Cells cells;
    halved(reduced).convertTo(cells.colour, CV_32F);
    cv::Mat edges = halvedMask(sharpEdges(reduced));
    cv::dilate(edges, edges, {});
    findRegions(cells, ~(edges | blownOut(cells.colour)));
    return cells;
}

const Region* mainPaper(const Cells& cells) {
    double brightest = 1;
    for (const Region& region : cells.regions) {
        if (region.area >= kSmallestPaper * static_cast<double>(cells.labels.total())) {
            brightest = std::max(brightest, region.brightness);
        }
    }
    const Region* best = nullptr;
    double bestScore = 0;
    for (const Region& region : cells.regions) {
        const double score = region.area * std::pow(region.brightness / brightest, 6) *
                             std::pow(1 - region.saturation, 2);
        if (region.brightness >= kDarkestPaper && score > bestScore) {
            bestScore = score;
            best = &region;
        }
    }
    const double needed = kSmallestPaper * static_cast<double>(cells.labels.total());
    return bestScore >= needed / 4 ? best : nullptr;
}

} // namespace doccam::page
