// The PDF document under construction, and the queues of files.
#pragma once

#include <hpdf.h>

#include <csetjmp>
#include <memory>
#include <string>
#include <vector>

namespace doccam {

class PdfWriter;

} // namespace doccam

namespace doccam::record {

// One thread at a time.
struct Documents {
    std::shared_ptr<PdfWriter> pdfWriter; // between pdf_start and pdf_end
    HPDF_Doc pdf = nullptr;               // its handle, stale after pdf_end
    std::jmp_buf env{};                   // never armed: the error handler returns
    std::string outPdfPath;
    std::vector<std::string> pdf_filelist;
    std::vector<std::string> img_filelist;
};

} // namespace doccam::record
