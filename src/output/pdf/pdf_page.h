// Adding a picture file to a PDF document as a page.
#pragma once

#include <hpdf.h>

#include <string>

namespace doccam {

struct PdfError {
    HPDF_STATUS number = HPDF_OK;
    HPDF_STATUS detail = 0;
};

// Adds a page that shows the file at path, whose last characters, "jpg" or "png", give its type;
// nothing for any other. A PNG is read to its end, as libpng would abort the process on a damaged
// one. Returns the error, unless document has reported it; its page may then be incomplete.
PdfError addPicturePage(HPDF_Doc document, const std::string& path);

} // namespace doccam
