// Names of PDFs.
#pragma once

#include <string>

namespace doccam::host {

// Whether name has the extension of a PDF, in upper or lower case.
bool isPdfName(const std::string& name);

} // namespace doccam::host
