#include "output/pdf/document_steps.h"

#include "base/pictures/picture_file.h"
#include "output/files/files.h"
#include "output/pdf/pdf_writer.h"
#include "state/documents.h"

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <utility>

namespace doccam {
namespace {

constexpr std::size_t kFewestMerged = 2;
constexpr std::size_t kMaximumRead = 4;

// What cannot be read as a picture is not reported.
void readQuietly(const std::string& path) {
    try {
        if (fileExists(path.c_str())) {
            readPictureFile(path, cv::IMREAD_COLOR);
        }
    } catch (const cv::Exception&) {
        return;
    }
}

} // namespace

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

int mergeQueued(record::Documents& documents, const char* path, bool deleteSources) {
    if (documents.img_filelist.size() < kFewestMerged) {
        return -1;
    }
    const auto files = std::exchange(documents.img_filelist, {});
    for (std::size_t i = 0; i < std::min(files.size(), kMaximumRead); ++i) {
        readQuietly(files[i]);
    }
    // The composition of the pictures is deliberately empty: no layout is defined.
    if (path == nullptr || !fileExists(path)) {
        return -2;
    }
    if (deleteSources) {
        removeFiles(files);
    }
    return 0;
}

} // namespace doccam
