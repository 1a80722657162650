// The automatic crop's geometry: borders around the frame, the sheet's box, the straight page.
#pragma once

#include "docimage/sheet/sheet_geometry.h"

#include <opencv2/core/types.hpp>

namespace doccam {

struct BorderAmounts {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;

    // The size they add to a picture.
    cv::Size added() const { return {left + right, top + bottom}; }
};

struct FittedCorners {
    BorderAmounts borders; // to add around the frame
    SheetCorners corners;  // in pixels of the bordered frame
};

// Makes room for corners outside the frame: for the last one past each side, not the farthest.
FittedCorners fitIntoFrame(SheetCorners corners, cv::Size frame);

// The box enlarged by four pixels, clipped to the right and lower edge of the picture.
cv::Rect enlargedBox(cv::Rect box, cv::Size picture);

// The page in the picture's centre, in steps of four pixels, clipped to its right and lower edge.
cv::Rect centredPage(cv::Size page, cv::Size picture);

// The size with each side rounded down to a multiple of four.
cv::Size inStepsOfFour(cv::Size size);

} // namespace doccam
