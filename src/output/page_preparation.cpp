#include "output/page_preparation.h"

#include <opencv2/imgproc.hpp>

namespace doccam {

cv::Mat blueFirst(const cv::Mat& frame) {
    cv::Mat page;
    cv::cvtColor(frame, page, cv::COLOR_RGB2BGR);
    return page;
}

} // namespace doccam
