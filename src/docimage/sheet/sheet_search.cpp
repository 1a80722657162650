#include "docimage/sheet/sheet_search.h"

#include "base/shared_work.h"
#include "docimage/sheet/sheet_search_kernels.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace doccam {
namespace {

// For sides that are not a multiple of four, OpenCV's area means are of uneven parts.
void reduceUnevenly(const cv::Mat& frame, cv::Mat& reduced) {
    cv::Mat colours, grey;
    cv::resize(frame, colours, reduced.size(), 0, 0, cv::INTER_AREA);
    cv::cvtColor(colours, grey, cv::COLOR_RGB2GRAY);
    grey.copyTo(reduced);
}

void reduceEvenly(const cv::Mat& frame, cv::Mat& reduced) {
    const auto& kernels = widestKernels<allSheetSearchKernels>();
    forEachRow(reduced.rows, [&](int y) {
        const int row = kReduction * y;
        kernels.reduceToGrey(
            {frame.ptr(row), frame.ptr(row + 1), frame.ptr(row + 2), frame.ptr(row + 3)},
            reduced.cols, reduced.ptr(y));
    });
}

// Replicates a row's ends.
void extendRow(uchar* row, int width) {
    std::memset(row - kBlurReach, row[0], kBlurReach);
    std::memset(row + width, row[width - 1], kBlurReach);
}

SheetSearchKernels::SumRows rowsAround(const cv::Mat& sums, int y) {
    SheetSearchKernels::SumRows rows;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const int near = y + static_cast<int>(i) - kBlurReach;
        rows[i] = sums.ptr<std::uint16_t>(std::clamp(near, 0, sums.rows - 1));
    }
    return rows;
}

} // namespace

void SheetSearch::reduce(const cv::Mat& frame) {
    const cv::Size size(frame.cols / kReduction, frame.rows / kReduction);
    CV_Assert(!size.empty());
    padded_.create(size.height, size.width + 2 * kBlurReach, CV_8UC1);
    reduced_ = padded_(cv::Rect({kBlurReach, 0}, size));
    if (frame.size() == size * kReduction) {
        reduceEvenly(frame, reduced_);
    } else {
        reduceUnevenly(frame, reduced_);
    }
}

// Returns the levels of the corrected copy.
Levels SheetSearch::flatField() {
    const auto& kernels = widestKernels<allSheetSearchKernels>();
    const int width = reduced_.cols;
    sums_.create(reduced_.size(), CV_16UC1);
    forEachRow(reduced_.rows, [&](int y) {
        extendRow(reduced_.ptr(y), width);
        kernels.blurAlong(reduced_.ptr(y), width, sums_.ptr<std::uint16_t>(y));
    });
    return levelsOfRows(reduced_.rows, [&](int y, Levels& levels) {
        kernels.flatField(rowsAround(sums_, y), width, reduced_.ptr(y));
        countLevels(reduced_.ptr(y), width, levels);
    });
}

const OuterOutlines& SheetSearch::outlinesIn(const cv::Mat& frame) {
    reduce(frame);
    markBrightRegions(reduced_, flatField());
    outlines_.search(reduced_);
    return outlines_;
}

} // namespace doccam
