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
// characters of path, "jpg" or "png", name its type; for any other nothing is added. A PNG is read
// to its end first, as libpng would end the process over a damaged one; a JPEG only has to have a
// header. Returns what is wrong with the file, or with the page when document itself has not
// reported that; after an error document may hold a page that is not complete.
PdfError addPicturePage(HPDF_Doc document, const std::string& path);

} // namespace doccam
