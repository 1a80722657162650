#include "page/paper/picture_boxes.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <numeric>

namespace doccam::page {
namespace {

constexpr int kNear = 2; // cells, by which a border may be tilted

// How much of each row, or column, near one side of box has an edge: the part of the side.
double edgeAlong(const cv::Mat& edges, cv::Rect strip, int dimension) {
    cv::Mat any;
    cv::reduce(edges(strip & cv::Rect({}, edges.size())), any, dimension, cv::REDUCE_MAX);
    return static_cast<double>(cv::countNonZero(any)) / static_cast<double>(any.total());
}

// The parts of the upper, lower, left and right side of box that are edges.
std::array<double, 4> edgesAround(const cv::Mat& edges, const cv::Rect& box) {
    constexpr int kWide = 2 * kNear + 1;
    return {edgeAlong(edges, {box.x, box.y - kNear, box.width, kWide}, 0),
            edgeAlong(edges, {box.x, box.br().y - 1 - kNear, box.width, kWide}, 0),
            edgeAlong(edges, {box.x - kNear, box.y, kWide, box.height}, 1),
            edgeAlong(edges, {box.br().x - 1 - kNear, box.y, kWide, box.height}, 1)};
}

bool isPicture(const cv::Mat& edges, const cv::Rect& box) {
    constexpr double kWorstSide = 0.2;
    constexpr double kAllSides = 0.65; // a disc has 0.43
    const std::array<double, 4> sides = edgesAround(edges, box);
    return *std::min_element(sides.begin(), sides.end()) > kWorstSide &&
           std::accumulate(sides.begin(), sides.end(), 0.0) > 4 * kAllSides;
}

} // namespace

cv::Mat pictureBoxes(const Cells& cells, const Region& main) {
    constexpr int kSmallest = 12; // cells, each way
    cv::Mat boxes = cv::Mat::zeros(cells.labels.size(), CV_8U);
    const cv::Mat edges = cells.labels == 0;
    const cv::Mat other = cells.labels != main.label;
    cv::Mat labels;
    cv::Mat statistics;
    cv::Mat centroids;
    const int count = cv::connectedComponentsWithStats(other, labels, statistics, centroids, 8);
    for (int label = 1; label < count; ++label) {
        const int* const row = statistics.ptr<int>(label);
        const cv::Rect box(row[cv::CC_STAT_LEFT], row[cv::CC_STAT_TOP], row[cv::CC_STAT_WIDTH],
                           row[cv::CC_STAT_HEIGHT]);
        if (box.width >= kSmallest && box.height >= kSmallest && isPicture(edges, box)) {
            boxes(box).setTo(255);
        }
    }
    return boxes;
}

} // namespace doccam::page
