// Putting a picture file on a page of a PDF document.
#pragma once

#include <hpdf.h>

#include <string>

namespace doccam {

struct PdfError {
    HPDF_STATUS number = HPDF_OK;
    HPDF_STATUS detail = 0;
};

// Adds one page to document that shows the file at path, one pixel to one point. The last three
// characters of path, "jpg" or "png", name its type; for any other nothing is added. The file is
// read to its end first, as the PDF library would take a damaged one or end the process over it.
// Returns what is wrong with the file, or with the page when document itself has not reported that;
// after an error document holds a page that is not complete.
PdfError addPicturePage(HPDF_Doc document, const std::string& path);

} // namespace doccam
