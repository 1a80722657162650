// Which pages a file can become.
#pragma once

#include "documents/writer/document_plan.h"

#include <string>
#include <vector>

namespace doccam::host {

// Of a JPEG, PNG, TIFF or PDF file; none for others. Throws DocumentError.
std::vector<FilePart> fileParts(const std::string& file);

// A picture of a TIFF as it is shown. Throws DocumentError.
cv::Mat uprightTiff(const std::string& file, int part);

} // namespace doccam::host
