// Making a PDF of pages.
#pragma once

#include "documents/document_options.h"
#include "documents/input_pages.h"
#include "host/interrupt.h"
#include "host/output_file.h"

#include <string>
#include <vector>

namespace doccam::host {

struct MadeDocument {
    std::vector<SizedPage> pages{};        // of PDFs, too
    std::vector<std::string> complaints{}; // what was left undone, a sentence each
};

// The part of the file that makeDocument() writes.
std::string draftOf(const OutputFile& file);

// Drafts the pages, after those of the PDF base if it is not empty, as file. Throws Failure;
// Interruption when the process must end.
MadeDocument makeDocument(const OutputFile& file, std::vector<InputPage> pages,
                          const DocumentOptions& options, const std::string& base,
                          const Interrupt& interrupt);

// The same, published as file. Returns the complaints.
std::vector<std::string> publishDocument(OutputFile& file, std::vector<InputPage> pages,
                                         const DocumentOptions& options,
                                         const Interrupt& interrupt);

} // namespace doccam::host
