// Adding a picture file to a PDF document as a page.
#pragma once

#include <hpdf.h>

#include <string>

namespace doccam {

struct PdfError {
    HPDF_STATUS number = HPDF_OK;
    HPDF_STATUS detail = 0;
};

// Adds one page to document that shows the file at path, one point per pixel. The last three
// characters of path, "jpg" or "png", give its type; for any other nothing is added. A PNG is first
// read to its end, as libpng would abort the process on a damaged one; of a JPEG only the header is
// checked. Returns the error of the file, or of the page unless document itself has reported it;
// after an error document may hold an incomplete page.
PdfError addPicturePage(HPDF_Doc document, const std::string& path);

} // namespace doccam
