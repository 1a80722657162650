// A page with a picture.
#pragma once

#include "documents/writer/document_plan.h"

#include <qpdf/QPDF.hh>
#include <string>

namespace doccam::host {

// Adds a page to the end of the document; its size is that of the plan, and its picture, whole and
// in the middle, as large as fits. Throws DocumentError.
QPDFObjectHandle addPicturePage(QPDF& document, const PlannedPage& planned);

// Where the picture of a page lies on it, as shown, in points.
struct Place {
    double left = 0;
    double bottom = 0;
    double width = 0;
    double height = 0;
};

Place placeOf(cv::Size picture, const Millimetres& page);

} // namespace doccam::host
