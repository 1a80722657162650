// Owning handle for a libharu document.
#pragma once

#include <hpdf.h>

#include <memory>
#include <type_traits>

namespace doccam {

struct PdfRelease {
    void operator()(HPDF_Doc document) const { HPDF_Free(document); }
};

using PdfDocument = std::unique_ptr<std::remove_pointer_t<HPDF_Doc>, PdfRelease>;

// An empty document, or null if out of memory. Its failed calls are reported to onError.
inline PdfDocument makePdfDocument(HPDF_Error_Handler onError, void* context) {
    return PdfDocument(HPDF_New(onError, context));
}

} // namespace doccam
