// Making a rectified sheet look like paper.
#include "page/look.h"

#include "page/paper/binarized.h"
#include "page/paper/illumination.h"
#include "page/paper/thresholds.h"
#include "page/paper/tone.h"
#include "page/rim/rim.h"

#include <opencv2/imgproc.hpp>

namespace doccam::page {

namespace {

// As OpenCV converts blue, green and red.
double greyOf(const cv::Scalar& colour) {
    return 0.114 * colour[0] + 0.587 * colour[1] + 0.299 * colour[2];
}

} // namespace

cv::Mat paperLook(const cv::Mat& page) {
    const Illumination found = illumination(page);
    cv::Mat paper = evened(page, found);
    fillRim(paper, found.ground);
    return paper;
}

cv::Mat greyPaperLook(const cv::Mat& page) {
    if (page.channels() == 1) {
        return paperLook(page);
    }
    Illumination found = illumination(page);
    cv::Mat grey;
    cv::cvtColor(page, grey, cv::COLOR_BGR2GRAY);
    cv::cvtColor(found.light, found.light, cv::COLOR_BGR2GRAY);
    cv::Mat paper = evened(grey, found);
    fillRim(paper, cv::Scalar::all(greyOf(found.ground)));
    return paper;
}

cv::Mat blackAndWhite(const cv::Mat& paper) {
    cv::Mat grey = paper;
    if (paper.channels() != 1) {
        cv::cvtColor(paper, grey, cv::COLOR_BGR2GRAY);
    }
    return binarized(grey, thresholds(grey));
}

} // namespace doccam::page
