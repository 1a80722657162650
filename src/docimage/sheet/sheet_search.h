// Searching frames for bright outlines.
#pragma once

#include "docimage/pixels/levels.h"
#include "docimage/sheet/outer_outlines.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// Works on a grey copy of a quarter of the frame's width and height, reusing its memory from frame
// to frame. Not thread-safe.
class SheetSearch {
  public:
    // The outlines of bright regions in the red-first frame, corrected for slow variations of the
    // light, in pixels of the reduced copy. Valid until the next search. Throws cv::Exception for a
    // frame under four pixels wide or high.
    const OuterOutlines& outlinesIn(const cv::Mat& frame);

    // The individual steps.
    // The reduced grey copy, its sides rounded down.
    const cv::Mat& reduce(const cv::Mat& frame);
    // The copy without slow variations of the light.
    const cv::Mat& flatField();

  private:
    cv::Mat padded_;  // the reduced copy with the pixels that the blur reads around each row
    cv::Mat reduced_; // a view of it
    cv::Mat sums_;    // of the blur along the rows
    Levels levels_{};
    OuterOutlines outlines_;
};

} // namespace doccam
