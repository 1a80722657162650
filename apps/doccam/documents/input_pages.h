// Files as pages of a document.
#pragma once

#include "documents/paper/page_sizing.h"
#include "documents/writer/document_plan.h"

#include <opencv2/core.hpp>

#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

struct InputPage {
    PlannedPage planned;
    cv::Size pixels{};                 // as shown; none for a page of a PDF
    std::optional<Millimetres> size{}; // of a PDF's page
    std::optional<Density> inFile{};   // of the picture
    std::optional<SizedPage> sized{};  // of a page that was made here

    bool isPdf() const { return size.has_value(); }
};

// The pages that a file becomes: a picture, all pictures of a TIFF, all pages of a PDF. Throws
// Failure with the reason for a file that becomes none; decodes untrusted data.
std::vector<InputPage> inputPages(const std::string& file);

// The page of a JPEG or PNG that was made here.
InputPage madePage(const std::string& file, const SizedPage& sized);

// A page's picture as it is shown, grey or blue first, but for the turns of the plan.
cv::Mat pictureOf(const InputPage& page);

// The same with those turns.
cv::Mat uprightPictureOf(const InputPage& page);

} // namespace doccam::host
