#include "output/pdf/document_steps.h"

#include "output/files/files.h"
#include "output/pdf/pdf_writer.h"
#include "state/library_state.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace doccam {

void startDocument(const char* path) {
    if (path != nullptr) {
        LibraryState& library = state();
        library.documents.pdfWriter = std::make_shared<PdfWriter>(path);
        library.documents.pdf = library.documents.pdfWriter->document();
        library.documents.outPdfPath = path;
    }
}

void addPageToDocument(const char* picture) {
    if (picture != nullptr && state().documents.pdfWriter) {
        state().documents.pdfWriter->addPage(picture);
    }
}

void endDocument() {
    if (const auto writer = std::exchange(state().documents.pdfWriter, nullptr)) {
        finishDocument(*writer, {});
    }
}

void failDocument(HPDF_STATUS number, HPDF_STATUS detail) {
    if (const auto& writer = state().documents.pdfWriter) {
        writer->fail(number, detail);
    } else {
        printPdfError(number, detail);
    }
}

int enqueueFile(std::vector<std::string>& queue, const char* path) {
    if (path == nullptr || !fileExists(path)) {
        return -1;
    }
    queue.emplace_back(path);
    return 0;
}

int combineQueued(const char* path, bool deleteSources) {
    if (path == nullptr || state().documents.pdf_filelist.empty()) {
        return -1;
    }
    const auto files = std::exchange(state().documents.pdf_filelist, {});
    PdfWriter writer(path);
    std::vector<std::string> present;
    std::copy_if(files.begin(), files.end(), std::back_inserter(present),
                 [](const std::string& file) { return fileExists(file.c_str()); });
    // A file that stood at path before is not what was asked for: its pages may not be lost.
    if (!finishDocument(writer, present) || !fileExists(path)) {
        return -2;
    }
    if (deleteSources) {
        removeFiles(files);
    }
    return 0;
}

} // namespace doccam
