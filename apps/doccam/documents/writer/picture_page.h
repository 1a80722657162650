// A page with a picture.
#pragma once

#include "documents/writer/document_plan.h"

#include <qpdf/QPDF.hh>
#include <string>

namespace doccam::host {

struct PicturePage {
    QPDFObjectHandle page;
    QPDFObjectHandle::Rectangle picture; // before the page is turned, in points
};

// Adds a page to the end of the document. Throws DocumentError.
PicturePage addPicturePage(QPDF& document, const PlannedPage& planned);

} // namespace doccam::host
