// Sheets of every size with what is usually printed on them.
#pragma once

#include "scene/pages/printed_page.h"

namespace doccam::virtualcam {

PrintedPage printLetter(cv::Size2d millimetres, cv::RNG& random);
PrintedPage printReceipt(cv::RNG& random);
PrintedPage printCard(cv::RNG& random);
PrintedPage printBanknote(cv::RNG& random);
PrintedPage printRuledPad(cv::RNG& random);

} // namespace doccam::virtualcam
