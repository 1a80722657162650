// What tesseract reads on a page, compared with what is printed there.
#pragma once

#include "scene/pages/printed_page.h"

#include <opencv2/core/mat.hpp>

#include <string>
#include <vector>

namespace doccam::test {

struct ReadWord {
    std::string text;
    cv::Rect box;
};

// The words on an upright page. Throws std::runtime_error if tesseract cannot be run.
std::vector<ReadWord> readWords(const cv::Mat& page, int dotsPerInch);

struct Reading {
    double found = 1; // of the printed words, 0 to 1
    int wrong = 0;    // words that are not printed there
};

// Compares without regard to order and to punctuation. Words under highlighter count neither as
// missing nor as wrong where markedApart, and what is read in pictures never counts. page is the
// size of the picture that was read.
Reading compareWords(const virtualcam::PrintedPage& print, const std::vector<ReadWord>& read,
                     cv::Size page, bool markedApart);

} // namespace doccam::test
