#include "output/still/whole_frame.h"

#include "base/frame_size.h"
#include "output/still/page_cleaning.h"
#include "state/settings.h"

#include <opencv2/imgproc.hpp>

#include <cstdio>

namespace doccam {
namespace {

cv::Mat enlarged(const cv::Mat& page, FrameSize size) {
    cv::Mat larger;
    cv::resize(page, larger, {size.width, size.height}, 0, 0, cv::INTER_LINEAR);
    return larger;
}

} // namespace

cv::Mat pageOfWholeFrame(const cv::Mat& frame, const record::Settings& settings, bool enlarge) {
    std::puts("capture->01");
    cv::Mat page = blueFirst(frame);
    std::puts("capture->02");
    cleanAsSet(page, settings);
    if (enlarge) {
        const int turns = settings.RotateAngle.load(std::memory_order_relaxed);
        return enlarged(page, turned(kEnlargedSize, turns));
    }
    std::puts("capture->03");
    return page;
}

} // namespace doccam
