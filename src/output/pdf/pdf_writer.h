// A PDF document in the making, and the file that it becomes.
#pragma once

#include "base/handles/pdf_document.h"

#include <span>
#include <string>

namespace doccam {

// The first error spoils the document: it takes no further page and is not saved. Each error is
// printed when it happens. One thread at a time.
class PdfWriter {
  public:
    // Begins a document for the file at path.
    explicit PdfWriter(std::string path);

    // libharu reports errors to the object's address.
    PdfWriter(const PdfWriter&) = delete;
    PdfWriter& operator=(const PdfWriter&) = delete;

    const std::string& path() const { return path_; }

    // The handle, null when there was no memory for a document.
    HPDF_Doc document() const { return document_.get(); }

    // Adds a page that shows the file, as addPicturePage() does. Throws std::bad_alloc, after which
    // the document is spoilt, too.
    void addPage(const std::string& picture);

    // Saves the document, complete or not at all. Throws as addPage().
    void save();

    // Prints an error and spoils the document.
    void fail(HPDF_STATUS number, HPDF_STATUS detail);

    bool failed() const { return failed_; }

    // The first error.
    const std::string& reason() const { return reason_; }

  private:
    static void onError(HPDF_STATUS number, HPDF_STATUS detail, void* writer);
    void spoil(const char* reason);
    template <typename Step>
    void spoiltByExceptions(Step&& step);

    std::string path_;
    bool failed_ = false;
    std::string reason_;
    PdfDocument document_;
};

// Prints the line of a libharu error.
void printPdfError(HPDF_STATUS number, HPDF_STATUS detail);

// Adds the pictures as pages, saves the document and reports a failure to the host. True when the
// document was saved.
bool finishDocument(PdfWriter& writer, std::span<const std::string> pictures);

// Reports the failure of a document, if it has failed.
void reportFailure(const PdfWriter& writer);

} // namespace doccam
