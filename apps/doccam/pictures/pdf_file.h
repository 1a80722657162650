// Making a PDF of image files.
#pragma once

#include "host/interrupt.h"
#include "host/output_file.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace doccam::host {

// Whether name has the extension of a PDF, in upper or lower case.
bool isPdfName(const std::string& name);

// Is told the number of each page before it is made, from 1.
using PageNote = std::function<void(std::size_t)>;

// Writes the images as the pages of a PDF, a part of file, and returns its path. One image pixel
// becomes one point; orientation tags are applied. Throws Failure naming an unreadable image, or
// the file; Interruption when the process is asked to end.
std::string draftPdf(const OutputFile& file, const std::vector<std::string>& images,
                     const Interrupt& interrupt, const PageNote& note = {});

// The same, published as file.
void publishPdf(OutputFile& file, const std::vector<std::string>& images,
                const Interrupt& interrupt);

// Publishes pages, JPEG or PNG files named so, as file. Throws Failure.
void publishPages(OutputFile& file, const std::vector<std::string>& pages);

} // namespace doccam::host
