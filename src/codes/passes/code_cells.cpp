#include "codes/passes/code_cells.h"

#include "base/shared_work.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::codes {
namespace {

constexpr int kSide = CodeCells::kSide;

struct Edges {
    int xx = 0;
    int yy = 0;
    int xy = 0;
    int darkest = 255;
    int lightest = 0;
};

// The pixel right of the cell and the row below it must be there, too.
Edges edgesIn(const cv::Mat& grey, int left, int top) {
    Edges edges;
    for (int y = 0; y < kSide; ++y) {
        const unsigned char* const row = grey.ptr(top + y) + left;
        const unsigned char* const next = grey.ptr(top + y + 1) + left;
        for (int x = 0; x < kSide; ++x) {
            // Both at the corner between four pixels.
            const int rising = next[x + 1] - row[x];
            const int falling = row[x + 1] - next[x];
            const int dx = (rising + falling) / 2;
            const int dy = (rising - falling) / 2;
            edges.xx += dx * dx;
            edges.yy += dy * dy;
            edges.xy += dx * dy;
            edges.darkest = std::min(edges.darkest, static_cast<int>(row[x]));
            edges.lightest = std::max(edges.lightest, static_cast<int>(row[x]));
        }
    }
    return edges;
}

// The part of the cell that is darker than the middle of its levels.
float inkIn(const cv::Mat& grey, int left, int top, const Edges& edges) {
    const int middle = (edges.darkest + edges.lightest) / 2;
    int dark = 0;
    for (int y = 0; y < kSide; ++y) {
        const unsigned char* const row = grey.ptr(top + y) + left;
        dark += static_cast<int>(
            std::count_if(row, row + kSide, [&](unsigned char level) { return level < middle; }));
    }
    return static_cast<float>(dark) / (kSide * kSide);
}

Cell cellOf(const Edges& edges) {
    constexpr int kContrast = 12;         // between ink and paper, whose noise is less
    constexpr double kLeastInk = 0.15;    // the same as a part of the paper's level
    constexpr double kLeastEdges = 0.012; // squares of differences, as a part of contrast's square
    constexpr double kOneWay = 0.75;
    const int contrast = edges.lightest - edges.darkest;
    const double strength = static_cast<double>(edges.xx) + edges.yy;
    Cell cell;
    if (contrast < kContrast || contrast < kLeastInk * edges.lightest ||
        strength < kLeastEdges * contrast * contrast * kSide * kSide) {
        return cell;
    }
    const double apart = static_cast<double>(edges.xx) - edges.yy;
    const double mixed = 2.0 * edges.xy;
    cell.pattern =
        std::hypot(apart, mixed) > kOneWay * strength ? Pattern::kBars : Pattern::kMatrix;
    const double angle = 0.5 * std::atan2(mixed, apart);
    cell.angle = static_cast<float>(angle < 0 ? angle + CV_PI : angle);
    return cell;
}

} // namespace

CodeCells codeCells(const cv::Mat& grey) {
    CodeCells all;
    all.columns = std::max((grey.cols - 1) / kSide, 0);
    all.rows = std::max((grey.rows - 1) / kSide, 0);
    all.cells.resize(static_cast<std::size_t>(all.columns) * static_cast<unsigned>(all.rows));
    shareWork(all.rows, [&](const cv::Range& rows) {
        for (int row = rows.start; row < rows.end; ++row) {
            for (int column = 0; column < all.columns; ++column) {
                const int left = column * kSide;
                const int top = row * kSide;
                const Edges edges = edgesIn(grey, left, top);
                Cell& cell = all.at(column, row);
                cell = cellOf(edges);
                if (cell.pattern != Pattern::kNone) {
                    cell.ink = inkIn(grey, left, top, edges);
                }
            }
        }
    });
    return all;
}

} // namespace doccam::codes
