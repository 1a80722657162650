// A4 pages with all that a page look has to keep legible and true to colour. Their paper is pure
// white, so that colours on them compare with those of a page whose paper has been made white.
#pragma once

#include "scene/pages/printed_page.h"

namespace doccam::virtualcam {

PrintedPage printSmallPrint(cv::RNG& random);
PrintedPage printPalePrint(cv::RNG& random);
PrintedPage printColouredPrint(cv::RNG& random);
PrintedPage printReversedPrint(cv::RNG& random);
PrintedPage printPictures(cv::RNG& random);
PrintedPage printFills(cv::RNG& random);
PrintedPage printHighlighter(cv::RNG& random);
PrintedPage printTables(cv::RNG& random);

// Something like a photograph: sky, hills, water, trees; 8-bit, blue first.
cv::Mat drawPhotograph(cv::Size pixels, cv::RNG& random);

} // namespace doccam::virtualcam
