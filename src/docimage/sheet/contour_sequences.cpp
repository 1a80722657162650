#include "docimage/sheet/contour_sequences.h"

#include <opencv2/core/core_c.h>

namespace doccam {

void ContourSequences::reset(std::size_t count) {
    contours_.clear();
    contours_.reserve(count);
    blocks_.clear();
    blocks_.reserve(count);
}

CvSeq* ContourSequences::add(std::span<const cv::Point> points) {
    static_assert(sizeof(cv::Point) == sizeof(CvPoint));
    auto* const header = reinterpret_cast<CvSeq*>(&contours_.emplace_back());
    return cvMakeSeqHeaderForArray(
        CV_SEQ_POLYGON, sizeof(CvContour), sizeof(CvPoint), const_cast<cv::Point*>(points.data()),
        static_cast<int>(points.size()), header, &blocks_.emplace_back());
}

std::span<const cv::Point> pointsOf(const CvSeq& sequence) {
    const auto* const first = reinterpret_cast<const cv::Point*>(sequence.first->data);
    return {first, static_cast<std::size_t>(sequence.total)};
}

} // namespace doccam
