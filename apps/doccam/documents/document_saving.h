// Saving a document as a PDF.
#pragma once

#include "documents/document_options.h"
#include "host/interrupt.h"
#include "host/output_file.h"
#include "host/own_output.h"
#include "pages/page_renderer.h"
#include "pages/spool/page_document.h"

#include <opencv2/core/types.hpp>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace doccam::host {

struct SavedPage {
    KeptPage page;
    cv::Size size;
    SizedPage sized;
};

struct SavedDocument {
    std::vector<SavedPage> pages;
    std::vector<std::string> damaged{};    // what is wrong with those left out, a sentence each
    std::vector<std::string> complaints{}; // what else was left undone
};

// Is told the number of each page before it is made, from 1.
using PageNote = std::function<void(std::size_t)>;

// Publishes the pages, in order, as file, whose work folder has the renderer's. A document
// all of whose pages are damaged is not written. Throws Failure; Interruption when the process must
// end.
SavedDocument saveDocument(const PageDocument& document, PageRenderer& renderer, OutputFile& file,
                           const DocumentOptions& options, const Interrupt& interrupt,
                           const PageNote& note = {});

// Notes that the document is saved, unless pages are damaged. Call it once the file is where the
// user wants it; target, an absolute path, is its name unless empty.
void noteSaved(PageDocument& document, const SavedDocument& saved, const std::string& target = "");

// {"page", "width", "height", "cropped", "sheet", "confidence", "dpi", "dpi_from", "mm"} of each.
Json asJson(const SavedDocument& saved);

// "letter.pdf  4711 bytes  3 pages", or with json the object of a scan; complains of damage.
// Returns kFileFailed for pages left out.
int reportSaved(const SavedDocument& saved, const std::string& path, bool json);

} // namespace doccam::host
