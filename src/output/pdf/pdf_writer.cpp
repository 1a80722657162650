#include "output/pdf/pdf_writer.h"

#include "base/guarded.h"
#include "faults/faults.h"
#include "output/files/files.h"
#include "output/files/staged_file.h"
#include "output/pdf/pdf_page.h"

#include <array>
#include <cstdio>
#include <exception>
#include <string_view>
#include <utility>

namespace doccam {
namespace {

// libharu does not check whether its last bytes reached the disk.
bool endsAsPdf(const std::string& path) {
    constexpr std::string_view kEnd = "%%EOF";
    const std::string tail = lastBytes(path, kEnd.size() + 2);
    return tail.find(kEnd) != std::string::npos;
}

} // namespace

PdfWriter::PdfWriter(std::string path)
  : path_(std::move(path))
  , document_(makePdfDocument(onError, this)) {
    if (!document_) {
        spoil("out of memory");
    }
}

void PdfWriter::addPage(const std::string& picture) {
    if (failed_) {
        return;
    }
    spoiltByExceptions([&] {
        const PdfError error = addPicturePage(document_.get(), picture);
        // Not reported by libharu itself.
        if (error.number != HPDF_OK && !failed_) {
            fail(error.number, error.detail);
        }
    });
}

void PdfWriter::save() {
    if (failed_) {
        return;
    }
    spoiltByExceptions([&] {
        StagedFile file(path_);
        if (HPDF_SaveToFile(document_.get(), file.path().c_str()) != HPDF_OK) {
            return;
        }
        if ((file.isRegular() && !endsAsPdf(file.path())) || !file.commit()) {
            fail(HPDF_FILE_IO_ERROR, 0);
        }
    });
}

void PdfWriter::fail(HPDF_STATUS number, HPDF_STATUS detail) {
    printPdfError(number, detail);
    std::array<char, 64> reason{};
    std::snprintf(reason.data(), reason.size(), "error %04lX, detail %lu", number, detail);
    spoil(reason.data());
}

void PdfWriter::onError(HPDF_STATUS number, HPDF_STATUS detail, void* writer) {
    static_cast<PdfWriter*>(writer)->fail(number, detail);
}

// Only the first reason counts; later errors result from it.
void PdfWriter::spoil(const char* reason) {
    if (!std::exchange(failed_, true)) {
        reason_ = reason;
    }
}

template <typename Step>
void PdfWriter::spoiltByExceptions(Step&& step) {
    try {
        step();
    } catch (const std::exception& error) {
        spoil(error.what());
        throw;
    }
}

void printPdfError(HPDF_STATUS number, HPDF_STATUS detail) {
    std::printf("ERROR: error_no=%04X, detail_no=%u\n", static_cast<unsigned>(number),
                static_cast<unsigned>(detail));
}

bool finishDocument(PdfWriter& writer, std::span<const std::string> pictures) {
    guarded("pdf_addPage", 0, [&] {
        for (const std::string& picture : pictures) {
            writer.addPage(picture);
        }
        return 0;
    });
    guarded("pdf_end", 0, [&] {
        writer.save();
        reportFailure(writer);
        return 0;
    });
    return !writer.failed();
}

void reportFailure(const PdfWriter& writer) {
    if (writer.failed()) {
        reportFault({DOCCAM_FAULT_DOCUMENT, DOCCAM_CAUSE_OTHER,
                     writer.path() + " could not be made or saved: " + writer.reason()});
    }
}

} // namespace doccam
