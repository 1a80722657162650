// What the hosts ask of the module that writes PDFs with libqpdf, libtiff and libpng.
#pragma once

#include "base/modules/module.h"
#include "documents/writer/document_plan.h"

#include <string>
#include <vector>

namespace doccam::host {

// The module's table. All of it throws DocumentError; any thread may call it.
struct DocumentModule {
    ModuleHead head;

    // Whether the file begins as a PDF or a TIFF.
    bool (*isPdf)(const std::string& file);
    bool (*isTiff)(const std::string& file);

    // The parts of a JPEG, PNG, TIFF or PDF file, all of whose pictures but that of a PNG are
    // decoded; none of other files.
    std::vector<FilePart> (*parts)(const std::string& file);

    // A picture of a TIFF, upright, grey or blue first.
    cv::Mat (*tiffPicture)(const std::string& file, int part);

    // Writes the PDF to path.
    void (*write)(const PdfPlan& plan, const std::string& path);
};

// Opens the module at first use. Throws ModuleError. Any thread.
inline const DocumentModule& documentModule() {
    return moduleTable<DocumentModule>(kDocumentsModule);
}

} // namespace doccam::host
