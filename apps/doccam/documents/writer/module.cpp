// The module that writes PDFs with libqpdf, libtiff and libpng.
#include "base/modules/module_seal.h"
#include "documents/writer/document_module.h"
#include "documents/writer/file_parts.h"
#include "documents/writer/pdf_pages.h"
#include "documents/writer/pdf_writer.h"
#include "documents/writer/pictures/tiff_pictures.h"

extern "C" {

[[gnu::visibility("default")]] extern constexpr doccam::host::DocumentModule doccam_module{
    .head = {doccam::kDocumentsModule, DOCCAM_MODULE_VERSION},
    .isPdf = [](const std::string& file) { return doccam::host::isPdf(file); },
    .isTiff = [](const std::string& file) { return doccam::host::isTiffFile(file); },
    .parts = [](const std::string& file) { return doccam::host::fileParts(file); },
    .tiffPicture = [](const std::string& file,
                      int part) { return doccam::host::uprightTiff(file, part); },
    .write = [](const doccam::host::PdfPlan& plan,
                const std::string& path) { doccam::host::writePdf(plan, path); },
};

[[gnu::used, gnu::section(".doccam_seal")]] extern constexpr doccam::ModuleSeal doccam_seal =
    doccam::unsealed();
}
