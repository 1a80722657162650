#include "output/pdf/document_steps.h"

#include "output/files/files.h"
#include "output/pdf/pdf_writer.h"
#include "state/documents.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace doccam {

void startDocument(record::Documents& documents, const char* path) {
    if (path != nullptr) {
        documents.pdfWriter = std::make_shared<PdfWriter>(path);
        documents.pdf = documents.pdfWriter->document();
        documents.outPdfPath = path;
    }
}

void addPageToDocument(record::Documents& documents, const char* picture) {
    if (picture != nullptr && documents.pdfWriter) {
        documents.pdfWriter->addPage(picture);
    }
}

void endDocument(record::Documents& documents) {
    if (const auto writer = std::exchange(documents.pdfWriter, nullptr)) {
        finishDocument(*writer, {});
    }
}

void failDocument(record::Documents& documents, HPDF_STATUS number, HPDF_STATUS detail) {
    if (const auto& writer = documents.pdfWriter) {
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

int combineQueued(record::Documents& documents, const char* path, bool deleteSources) {
    if (path == nullptr || documents.pdf_filelist.empty()) {
        return -1;
    }
    const auto files = std::exchange(documents.pdf_filelist, {});
    PdfWriter writer(path);
    std::vector<std::string> present;
    std::copy_if(files.begin(), files.end(), std::back_inserter(present),
                 [](const std::string& file) { return fileExists(file.c_str()); });
    // An older file at path does not contain these pages, so their sources must not be deleted.
    if (!finishDocument(writer, present) || !fileExists(path)) {
        return -2;
    }
    if (deleteSources) {
        removeFiles(files);
    }
    return 0;
}

} // namespace doccam
