// Searching frames for bright outlines.
#pragma once

#include "docimage/pixels/levels.h"
#include "docimage/sheet/outer_outlines.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// Works on a grey copy of a quarter of the frame's sides, reusing its memory. Not thread-safe.
class SheetSearch {
  public:
    // The outlines of bright regions in the red-first frame, whose light is evened, in pixels of
    // the copy. Valid until the next search. Throws cv::Exception for a side under four pixels.
    const OuterOutlines& outlinesIn(const cv::Mat& frame);

  private:
    void reduce(const cv::Mat& frame);
    Levels flatField();

    cv::Mat padded_;  // the reduced copy with the pixels that the blur reads around each row
    cv::Mat reduced_; // a view of it
    cv::Mat sums_;    // of the blur along the rows
    OuterOutlines outlines_;
};

} // namespace doccam
