// The search of frames, one after the other, for bright outlines.
#pragma once

#include "docimage/pixels/levels.h"
#include "docimage/sheet/outer_outlines.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// Works on a copy of the frame, grey and a quarter as wide and high. Its memory is kept from frame
// to frame. One thread.
class SheetSearch {
  public:
    // The outlines of what is bright in the red-first frame, slow changes of the light left out of
    // account, in pixels of the reduced copy. Valid until the next search. Throws cv::Exception for
    // a frame narrower or lower than four pixels.
    const OuterOutlines& outlinesIn(const cv::Mat& frame);

    // The steps, one by one.
    // The reduced grey copy, rests below a multiple of four cut off.
    const cv::Mat& reduce(const cv::Mat& frame);
    // The copy freed of slow changes.
    const cv::Mat& flatField();

  private:
    cv::Mat padded_;  // the reduced copy with the pixels around each row that its sums need
    cv::Mat reduced_; // a view of it
    cv::Mat sums_;    // along the rows
    Levels levels_{};
    OuterOutlines outlines_;
};

} // namespace doccam
