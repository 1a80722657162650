// What a PDF is written of.
#pragma once

#include "documents/layers/layers.h"
#include "documents/paper/page_size.h"

#include <opencv2/core.hpp>

#include <ctime>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace doccam::host {

// One picture of a file, or one page of a PDF.
struct FilePart {
    cv::Size pixels;                   // as shown; none for a page of a PDF
    std::optional<cv::Size2d> dpi{};   // as the file says
    std::optional<Millimetres> page{}; // of a PDF
};

struct PlannedPage {
    std::string file{};    // JPEG, PNG, TIFF or PDF
    int part = 0;          // the picture of a TIFF or the page of a PDF, from 0
    cv::Mat pixels{};      // instead of a file: 8-bit, grey or blue first
    Millimetres size{};    // as shown; that of a PDF's page is its own
    Millimetres picture{}; // of the picture, in the middle; all of the page if 0
    int quarterTurns = 0;  // clockwise, after the orientation that the file says
    // Makes, when the page is written, what stands there instead of the picture, upright; none for
    // the picture itself.
    std::function<std::optional<Layers>()> layers{};
    std::string text{}; // a PDF whose first page is laid over the upright picture, unseen
};

struct PdfPlan {
    std::string base{}; // a PDF to which the pages are appended; none if empty
    std::vector<PlannedPage> pages{};
    std::string title{};
    std::string author{};
    std::string language{};            // "en", "de-CH"
    std::optional<std::time_t> date{}; // when it was made; now if none
};

// A file that cannot become pages, or a PDF that could not be written; what() is a clause that
// follows the file's name: "is encrypted".
class DocumentError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace doccam::host
