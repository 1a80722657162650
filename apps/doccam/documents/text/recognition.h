// The words on pages, and which way up these are, as tesseract sees it.
#pragma once

#include "host/interrupt.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace doccam::host {

struct PageForText {
    // The page, right way up or off by quarter turns: 8-bit, grey or blue first. Called once, on
    // any thread, but for one page at a time.
    std::function<cv::Mat()> picture{};
    double dpi = 0;         // 0 if unknown
    std::size_t number = 1; // in the document, for complaints
};

struct PageText {
    std::string pdf{};    // one page of invisible words, upright after the turns; none if empty
    int quarterTurns = 0; // clockwise, which make the page upright
};

struct TextOptions {
    std::string languages{}; // as tesseract names them: "eng+deu"; no words if empty
    bool upright = false;    // whether to look which way up the pages are
};

struct RecognizedPages {
    std::vector<PageText> pages;         // one for each page, in order
    std::vector<std::string> complaints; // what was not done, and which package it needs
};

// Recognizes pages, one on each processor at a time; the PDFs and temporary files are in folder.
// What tesseract cannot do is complained of. Throws Failure for languages that cannot be names,
// what picture throws, and Interruption, after which no process is left.
RecognizedPages recognize(const std::vector<PageForText>& pages, const TextOptions& options,
                          const std::string& folder, const Interrupt& interrupt);

} // namespace doccam::host
