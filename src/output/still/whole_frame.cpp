#include "output/still/whole_frame.h"

#include "output/still/page_preparation.h"
#include "state/library_state.h"

#include <opencv2/imgproc.hpp>

#include <cstdio>

namespace doccam {
namespace {

constexpr int kLongSide = 3672;
constexpr int kShortSide = 2856;

cv::Size enlargedSize(int quarterTurns) {
    const bool upright = quarterTurns == 1 || quarterTurns == 3;
    return upright ? cv::Size(kShortSide, kLongSide) : cv::Size(kLongSide, kShortSide);
}

cv::Mat enlarged(const cv::Mat& page, cv::Size size) {
    cv::Mat larger;
    cv::resize(page, larger, size, 0, 0, cv::INTER_LINEAR);
    return larger;
}

} // namespace

cv::Mat pageOfWholeFrame(const cv::Mat& frame) {
    std::puts("capture->01");
    const cv::Mat page = blueFirst(frame);
    std::puts("capture->02");
    cleanAsSet(page);
    if (state().isInsert1000M.load(std::memory_order_relaxed)) {
        const int turns = state().RotateAngle.load(std::memory_order_relaxed);
        return enlarged(page, enlargedSize(turns));
    }
    std::puts("capture->03");
    return page;
}

} // namespace doccam
