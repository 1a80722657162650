#include "docimage/contour_sequences.h"

#include <opencv2/core/core_c.h>
#include <opencv2/core/mat.hpp>
#include <opencv2/imgproc/imgproc_c.h>

#include <cmath>

namespace doccam {

void StorageRelease::operator()(CvMemStorage* storage) const {
    cvReleaseMemStorage(&storage);
}

OuterContours::OuterContours(cv::Mat& binary)
  : storage_(cvCreateMemStorage(0)) {
    CvMat view = cvMat(binary);
    CvSeq* first = nullptr;
    cvFindContours(&view, storage_.get(), &first, sizeof(CvContour), CV_RETR_EXTERNAL,
                   CV_CHAIN_APPROX_NONE, cvPoint(0, 0));
    for (CvSeq* contour = first; contour != nullptr; contour = contour->h_next) {
        list_.push_back(contour);
    }
}

int enclosedArea(const CvSeq& contour) {
    return static_cast<int>(std::fabs(cvContourArea(&contour)));
}

std::vector<cv::Point> contourPoints(const CvSeq& contour) {
    std::vector<cv::Point> points(static_cast<std::size_t>(contour.total));
    cvCvtSeqToArray(&contour, points.data());
    return points;
}

} // namespace doccam
