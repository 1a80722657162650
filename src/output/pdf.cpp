// The one PDF document of the process: its steps, and the queues of files for it.
#include "api/boundary.h"
#include "api/faults.h"
#include "api/library_state.h"
#include "output/files.h"
#include "output/pdf_page.h"
#include "output/staged_file.h"

#include <doccam/doccam.hpp>

#include <array>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace {

using doccam::fileExists;
using doccam::guarded;
using doccam::state;

// The first reason counts; what follows comes of it.
void spoil(const char* reason) {
    state().pdfBroken = true;
    if (state().pdfFault.empty()) {
        state().pdfFault = reason;
    }
}

template <typename Step>
void spoiltByExceptions(Step&& step) {
    try {
        step();
    } catch (const std::exception& error) {
        spoil(error.what());
        throw;
    }
}

void reportSpoiltDocument() {
    const std::string reason = std::exchange(state().pdfFault, {});
    if (!reason.empty()) {
        doccam::reportFault(DOCCAM_FAULT_DOCUMENT,
                            state().outPdfPath + " could not be made or saved: " + reason);
    }
}

// For an error that the PDF library has not reported itself.
void report(const doccam::PdfError& error) {
    if (error.number != HPDF_OK && !state().pdfBroken) {
        error_handler(error.number, error.detail, nullptr);
    }
}

// The PDF library does not look whether its last bytes reached the disk.
bool endsAsPdf(const std::string& path) {
    constexpr std::string_view kEnd = "%%EOF";
    const std::string tail = doccam::lastBytes(path, kEnd.size() + 2);
    return tail.find(kEnd) != std::string::npos;
}

void save() {
    doccam::StagedFile file(state().outPdfPath);
    if (HPDF_SaveToFile(state().pdf, file.path().c_str()) != HPDF_OK) {
        return;
    }
    if ((file.isRegular() && !endsAsPdf(file.path())) || !file.commit()) {
        report({HPDF_FILE_IO_ERROR, 0});
    }
}

int enqueue(std::vector<std::string>& queue, const char* path) {
    if (path == nullptr || !fileExists(path)) {
        return -1;
    }
    queue.emplace_back(path);
    return 0;
}

int combine(const char* path, bool deleteSources) {
    const auto files = std::exchange(state().pdf_filelist, {});
    pdf_start(path);
    for (const std::string& file : files) {
        if (fileExists(file.c_str())) {
            pdf_addPage(file.c_str());
        }
    }
    pdf_end();
    if (!fileExists(path)) {
        return -2;
    }
    if (deleteSources) {
        doccam::removeFiles(files);
    }
    return 0;
}

} // namespace

void error_handler(unsigned long error_no, unsigned long detail_no, void* /*user_data*/) {
    std::printf("ERROR: error_no=%04X, detail_no=%u\n", static_cast<unsigned>(error_no),
                static_cast<unsigned>(detail_no));
    std::array<char, 64> reason{};
    std::snprintf(reason.data(), reason.size(), "error %04lX, detail %lu", error_no, detail_no);
    spoil(reason.data());
}

int pdf_start(const char* path) {
    return guarded("pdf_start", 0, [path] {
        if (path == nullptr) {
            return 0;
        }
        state().outPdfPath = path;
        state().pdfBroken = false;
        state().pdfFault.clear();
        state().pdfOwner = doccam::makePdfDocument(error_handler);
        if (!state().pdfOwner) {
            spoil("out of memory");
        }
        state().pdf = state().pdfOwner.get();
        return 0;
    });
}

int pdf_addPage(const char* imagePath) {
    return guarded("pdf_addPage", 0, [imagePath] {
        if (imagePath == nullptr || !state().pdfOwner || state().pdfBroken) {
            return 0;
        }
        spoiltByExceptions([&] { report(doccam::addPicturePage(state().pdf, imagePath)); });
        return 0;
    });
}

int pdf_end() {
    const auto document = std::move(state().pdfOwner);
    if (document && !state().pdfBroken) {
        guarded("pdf_end", 0, [] {
            spoiltByExceptions(save);
            return 0;
        });
    }
    return guarded("pdf_end", 0, [] {
        reportSpoiltDocument();
        return 0;
    });
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
