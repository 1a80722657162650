#include "output/still/page_cleaning.h"

#include "docimage/clean/background.h"
#include "docimage/clean/black_edge.h"
#include "state/settings.h"

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

void cleanAsSet(const cv::Mat& page, const record::Settings& settings) {
    if (isOn(settings.isDelBlackedge)) {
        whitenMargins(page);
    }
    if (isOn(settings.isDelBcakColor)) {
        whitenBackground(page);
    }
}

} // namespace doccam
