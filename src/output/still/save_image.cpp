// Saving a finished page: the colour mode of the settings, the file type of the path.
#include "api/faults.h"
#include "api/library_state.h"
#include "output/files/files.h"
#include "output/files/image_file.h"
#include "output/pdf/pdf_writer.h"
#include "output/still/page_picture.h"

#include <doccam/doccam.hpp>

#include <array>
#include <optional>
#include <string_view>

namespace doccam {
namespace {

constexpr std::size_t kExtensionLength = 3;

int jpegQuality() {
    return state().jpgQuality.load(std::memory_order_relaxed);
}

std::string textOf(const char* path) {
    return path != nullptr ? path : "";
}

// Throws std::out_of_range for a path shorter than an extension.
std::string extensionOf(const std::string& path) {
    return path.substr(path.size() - kExtensionLength);
}

// Where the picture of the PDF at path lies as JPEG; empty when path's last part has no extension.
std::string temporaryJpeg(std::string_view path) {
    const std::size_t start = path.rfind('/') + 1; // npos + 1 is 0: without a slash, the beginning
    const std::size_t dot = path.rfind('.');
    if (dot == std::string_view::npos || dot < start) {
        return {};
    }
    return homeFolder() + '/' + std::string(path.substr(start, dot - start)) + ".jpg";
}

// Writes picture as the one page of a PDF at target, by way of a JPEG in the home directory. False
// when the document could not be made; throws as writeImage().
bool writeOnePagePdf(const std::string& target, const cv::Mat& picture) {
    const std::string jpeg = temporaryJpeg(target);
    const bool written = writeImage(jpeg, picture, jpegQuality());
    PdfWriter writer(target);
    if (!written && fileExists(jpeg.c_str())) {
        // A picture left by an earlier page of that name must not pass for this one.
        writer.fail(HPDF_FILE_IO_ERROR, 0);
    }
    return finishDocument(writer, std::array{jpeg});
}

} // namespace
} // namespace doccam

int SaveImage(char* path, cv::Mat img) {
    using namespace doccam;
    const std::string target = textOf(path);
    const std::string extension = extensionOf(target);
    const int mode = state().colorMode.load(std::memory_order_relaxed);
    const auto picture = pictureInMode(img, mode);
    if (!picture) {
        return 0;
    }
    const auto quality = extension == "jpg" ? std::optional(jpegQuality()) : std::nullopt;
    const bool written = extension == "pdf" ? writeOnePagePdf(target, *picture)
                                            : writeImage(target, *picture, quality);
    if (!written) {
        reportFault(
            {DOCCAM_FAULT_STILL, DOCCAM_CAUSE_NOT_WRITTEN, target + " could not be written"});
    }
    return 0;
}

int TempImgToPdf(char* path, cv::Mat img) {
    doccam::writeOnePagePdf(doccam::textOf(path), img);
    return 0;
}
