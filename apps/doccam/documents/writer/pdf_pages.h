// Pages of other PDFs.
#pragma once

#include "documents/writer/document_plan.h"

#include <memory>
#include <qpdf/QPDF.hh>
#include <string>
#include <vector>

namespace doccam::host {

// Whether the file begins as a PDF.
bool isPdf(const std::string& file);

// Opens a PDF whose pages may be taken. Throws DocumentError for one that is damaged, encrypted or
// signed.
std::unique_ptr<QPDF> openPdf(const std::string& file);

// Lets the document know which contents of pages taken from another are hidden. Call it before the
// pages are taken.
void takeOptionalContent(QPDF& document, QPDF& other);

// The size of each page as shown.
std::vector<Millimetres> pageSizes(QPDF& document);

} // namespace doccam::host
