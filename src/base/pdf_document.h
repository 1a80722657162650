// An owned document of the PDF library.
#pragma once

#include <hpdf.h>

#include <memory>
#include <type_traits>

namespace doccam {

struct PdfRelease {
    void operator()(HPDF_Doc document) const { HPDF_Free(document); }
};

using PdfDocument = std::unique_ptr<std::remove_pointer_t<HPDF_Doc>, PdfRelease>;

// An empty document, or null when memory is short. onError hears of every failed call on it.
inline PdfDocument makePdfDocument(HPDF_Error_Handler onError) {
    return PdfDocument(HPDF_New(onError, nullptr));
}

} // namespace doccam
