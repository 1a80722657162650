// Filling the unknown parts of a smooth surface.
#include "page/paper/membrane.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <vector>

namespace doccam::page {

namespace {

// Coarse levels settle what is far away, at little cost.
constexpr int kSweeps = 4;
constexpr int kCoarseSweeps = 30;
constexpr int kCoarse = 4000; // cells

struct Level {
    cv::Mat surface;
    cv::Mat known;
};

// Half the size: means of what is known.
Level coarser(const Level& fine) {
    const cv::Size size((fine.surface.cols + 1) / 2, (fine.surface.rows + 1) / 2);
    const int channels = fine.surface.channels();
    Level coarse{cv::Mat::zeros(size, fine.surface.type()), cv::Mat::zeros(size, CV_8U)};
    for (int y = 0; y < fine.surface.rows; ++y) {
        const auto* from = fine.surface.ptr<float>(y);
        const auto* known = fine.known.ptr<unsigned char>(y);
        auto* to = coarse.surface.ptr<float>(y / 2);
        auto* count = coarse.known.ptr<unsigned char>(y / 2);
        for (int x = 0; x < fine.surface.cols; ++x) {
            if (known[x] == 0) {
                continue;
            }
            const unsigned char seen = ++count[x / 2];
            const auto weight = 1.0F / static_cast<float>(seen);
            for (int c = 0; c < channels; ++c) {
                float& mean = to[(x / 2) * channels + c];
                mean += (from[x * channels + c] - mean) * weight;
            }
        }
    }
    return coarse;
}

// One pass over the unknown cells, each becoming the mean of its neighbours.
void relax(cv::Mat& surface, const std::vector<cv::Point>& unknown) {
    const int channels = surface.channels();
    for (const cv::Point cell : unknown) {
        const auto* above = surface.ptr<float>(std::max(cell.y - 1, 0));
        const auto* below = surface.ptr<float>(std::min(cell.y + 1, surface.rows - 1));
        auto* row = surface.ptr<float>(cell.y);
        const int left = std::max(cell.x - 1, 0) * channels;
        const int right = std::min(cell.x + 1, surface.cols - 1) * channels;
        const int here = cell.x * channels;
        for (int c = 0; c < channels; ++c) {
            row[here + c] =
                0.25F * (above[here + c] + below[here + c] + row[left + c] + row[right + c]);
        }
    }
}

} // namespace

cv::Mat membrane(const cv::Mat& surface, const cv::Mat& known) {
    const int count = cv::countNonZero(known);
    if (count == 0 || count == known.rows * known.cols) {
        return surface.clone();
    }
    const Level coarse = coarser({surface, known});
    cv::Mat filled;
    cv::resize(membrane(coarse.surface, coarse.known), filled, surface.size(), 0, 0,
               cv::INTER_LINEAR);
    surface.copyTo(filled, known);
    std::vector<cv::Point> unknown;
    cv::findNonZero(known == 0, unknown);
    const int sweeps = known.total() > kCoarse ? kSweeps : kCoarseSweeps;
    for (int sweep = 0; sweep < sweeps; ++sweep) {
        relax(filled, unknown);
    }
    return filled;
}

} // namespace doccam::page
