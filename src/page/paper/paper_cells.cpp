// Which cells of a reduced page could be paper, and how they hang together.
#include "page/paper/paper_cells.h"

#include "page/paper/reduced_page.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace doccam::page {

namespace {

constexpr int kNear = 1;                // an edge is sharp if its step over 2 * kNear
constexpr int kFar = 3;                 // exceeds the slopes from there to kFar
constexpr int kSmallestRegion = 12;     // cells
constexpr double kDarkestPaper = 36;    // of 255
constexpr double kSmallestPaper = 0.02; // of the page
constexpr int kWhite = 255;

// Whether four samples, far, near, near, far, across a pixel show a sharp edge. Soft ones are
// shadows; noise takes a level or two.
inline bool isSharp(int farBefore, int before, int after, int farAfter) {
    const int step = std::abs(after - before);
    const int slope = std::max(std::abs(before - farBefore), std::abs(farAfter - after));
    return (step - slope) * 64 > 96 + std::max(before, after);
}

// Marks the pixels of a picture where it changes sharply from one sample to the next but one along
// offset, in bytes; the picture has a border of kFar around it.
void markSharp(const cv::Mat& bordered, std::ptrdiff_t offset, cv::Mat& edges) {
    const int channels = bordered.channels();
    for (int y = 0; y < edges.rows; ++y) {
        const auto* row = bordered.ptr<unsigned char>(y + kFar) + kFar * channels;
        auto* edge = edges.ptr<unsigned char>(y);
        for (int i = 0; i < edges.cols * channels; ++i) {
            const auto* sample = row + i;
            if (isSharp(sample[-kFar * offset], sample[-kNear * offset], sample[kNear * offset],
                        sample[kFar * offset])) {
                edge[i / channels] = kWhite;
            }
        }
    }
}

// 255 where a sharp edge, upright or level, passes. Means along the edge take noise out.
cv::Mat sharpEdges(const cv::Mat& picture) {
    cv::Mat bordered;
    cv::copyMakeBorder(picture, bordered, kFar, kFar, kFar, kFar, cv::BORDER_REPLICATE);
    cv::Mat edges = cv::Mat::zeros(picture.size(), CV_8U);
    cv::Mat means;
    cv::blur(bordered, means, {1, 3});
    markSharp(means, picture.channels(), edges);
    cv::blur(bordered, means, {3, 1});
    markSharp(means, static_cast<std::ptrdiff_t>(means.step[0]), edges);
    return edges;
}

// 255 for cells in which some pixel is 255.
cv::Mat halvedMask(const cv::Mat& mask) {
    cv::Mat half = halved(mask);
    return half > 0;
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
