#include "output/still/page_preparation.h"

#include "api/library_state.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgproc.hpp>

namespace doccam {
namespace {

bool isOn(const std::atomic<int>& setting) {
    return setting.load(std::memory_order_relaxed) == 1;
}

} // namespace

cv::Mat blueFirst(const cv::Mat& frame) {
    cv::Mat page;
    cv::cvtColor(frame, page, cv::COLOR_RGB2BGR);
    return page;
}

void cleanAsSet(const cv::Mat& page) {
    if (isOn(state().isDelBlackedge)) {
        FN_DeleteBlackEdge(page);
    }
    if (isOn(state().isDelBcakColor)) {
        FN_DeleteBackcolor(page);
    }
}

} // namespace doccam
