// Writing a PDF of a plan.
#pragma once

#include "documents/writer/document_plan.h"

#include <string>

namespace doccam::host {

// Writes path. Throws DocumentError.
void writePdf(const PdfPlan& plan, const std::string& path);

} // namespace doccam::host
