// Outlines as the image library's C interface describes them. It is called here for them, and in
// legacy_image for C images, and nowhere else.
#pragma once

#include <opencv2/core/types.hpp>
#include <opencv2/core/types_c.h>

#include <span>
#include <vector>

namespace doccam {

// Headers of the C interface for outlines whose points lie elsewhere. Their memory is kept from one
// use to the next.
class ContourSequences {
  public:
    // Begins anew, with room for count headers.
    void reset(std::size_t count);

    // A header, one of count, for points, which must outlive it. Valid until the next reset.
    CvSeq* add(std::span<const cv::Point> points);

  private:
    std::vector<CvContour> contours_;
    std::vector<CvSeqBlock> blocks_;
};

// The points that a header of ContourSequences is for.
std::span<const cv::Point> pointsOf(const CvSeq& sequence);

} // namespace doccam
