// The one PDF document that a host makes step by step, and the queues of files for others.
#include "api/boundary.h"
#include "api/library_state.h"
#include "output/files/files.h"
#include "output/pdf/pdf_writer.h"

#include <doccam/doccam.hpp>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

using doccam::fileExists;
using doccam::guarded;
using doccam::PdfWriter;
using doccam::state;

int enqueue(std::vector<std::string>& queue, const char* path) {
    if (path == nullptr || !fileExists(path)) {
        return -1;
    }
    queue.emplace_back(path);
    return 0;
}

int combine(const char* path, bool deleteSources) {
    const auto files = std::exchange(state().pdf_filelist, {});
    PdfWriter writer(path);
    std::vector<std::string> present;
    std::copy_if(files.begin(), files.end(), std::back_inserter(present),
                 [](const std::string& file) { return fileExists(file.c_str()); });
    // A file that stood at path before is not what was asked for: its pages may not be lost.
    if (!doccam::finishDocument(writer, present) || !fileExists(path)) {
        return -2;
    }
    if (deleteSources) {
        doccam::removeFiles(files);
    }
    return 0;
}

} // namespace

void error_handler(unsigned long error_no, unsigned long detail_no, void* /*user_data*/) {
    if (const auto& writer = state().pdfWriter) {
        writer->fail(error_no, detail_no);
    } else {
        doccam::printPdfError(error_no, detail_no);
    }
}

int pdf_start(const char* path) {
    return guarded("pdf_start", 0, [path] {
        if (path != nullptr) {
            state().pdfWriter = std::make_shared<PdfWriter>(path);
            state().pdf = state().pdfWriter->document();
            state().outPdfPath = path;
        }
        return 0;
    });
}

int pdf_addPage(const char* imagePath) {
    return guarded("pdf_addPage", 0, [imagePath] {
        if (imagePath != nullptr && state().pdfWriter) {
            state().pdfWriter->addPage(imagePath);
        }
        return 0;
    });
}

int pdf_end() {
    if (const auto writer = std::exchange(state().pdfWriter, nullptr)) {
        doccam::finishDocument(*writer, {});
    }
    return 0;
}

int AddImageFileToPDF(const char* path) {
    return guarded("AddImageFileToPDF", -1, [path] { return enqueue(state().pdf_filelist, path); });
}

int AddImagePath(const char* path) {
    return guarded("AddImagePath", -1, [path] { return enqueue(state().img_filelist, path); });
}

int CombineToPDF(const char* path, bool deleteSources) {
    return guarded("CombineToPDF", -2, [path, deleteSources] {
        if (path == nullptr || state().pdf_filelist.empty()) {
            return -1;
        }
        return combine(path, deleteSources);
    });
}
