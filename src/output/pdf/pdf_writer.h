// Writing a PDF document to a file.
#pragma once

#include "base/handles/pdf_document.h"

#include <span>
#include <string>

namespace doccam {

// Errors are printed; after the first the document is not saved. One thread at a time.
class PdfWriter {
  public:
    // Starts a document for the file at path.
    explicit PdfWriter(std::string path);

    // libharu reports errors to the object's address.
    PdfWriter(const PdfWriter&) = delete;
    PdfWriter& operator=(const PdfWriter&) = delete;

    const std::string& path() const { return path_; }

    // The handle; null if there was no memory for a document.
    HPDF_Doc document() const { return document_.get(); }

    // Adds a page like addPicturePage(). After a std::bad_alloc that it throws, it has failed.
    void addPage(const std::string& picture);

    // Saves the document, completely or not at all. Throws like addPage().
    void save();

    // Prints an error and makes the document fail.
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

// Adds the pictures, saves the document and reports a failure. Returns whether it was saved.
bool finishDocument(PdfWriter& writer, std::span<const std::string> pictures);

// Reports the failure of a document, if it has failed.
void reportFailure(const PdfWriter& writer);

} // namespace doccam
