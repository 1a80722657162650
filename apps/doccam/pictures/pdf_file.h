// Image files as the pages of one PDF.
#pragma once

#include "host/interrupt.h"
#include "host/output_file.h"

#include <string>
#include <vector>

namespace doccam::host {

// Whether name ends as a PDF's does, in any case of letters.
bool isPdfName(const std::string& name);

// Writes the images as the pages of a PDF, a part of file's, and returns its path. One image pixel
// becomes one point; a photograph stands as its camera was held. Throws Failure that names an image
// that cannot be read, or the file; Interruption when the process is asked to end.
std::string draftPdf(const OutputFile& file, const std::vector<std::string>& images,
                     const Interrupt& interrupt);

// The same, published as file.
void publishPdf(OutputFile& file, const std::vector<std::string>& images,
                const Interrupt& interrupt);

} // namespace doccam::host
