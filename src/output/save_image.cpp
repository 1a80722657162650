// Saving a finished page: the colour mode of the settings, the file type of the path.
#include "api/faults.h"
#include "api/library_state.h"
#include "output/files.h"
#include "output/image_file.h"
#include "output/page_picture.h"

#include <doccam/doccam.hpp>

#include <optional>
#include <string_view>

namespace {

using doccam::state;

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
    return doccam::homeFolder() + '/' + std::string(path.substr(start, dot - start)) + ".jpg";
}

} // namespace

int SaveImage(char* path, cv::Mat img) {
    const std::string target = textOf(path);
    const std::string extension = extensionOf(target);
    const auto picture =
        doccam::pictureInMode(img, state().colorMode.load(std::memory_order_relaxed));
    if (!picture) {
        return 0;
    }
    if (extension == "pdf") {
        TempImgToPdf(path, *picture);
        if (state().pdfBroken) {
            doccam::reportFault(DOCCAM_FAULT_STILL, target + " could not be written");
        }
        return 0;
    }
    const auto quality = extension == "jpg" ? std::optional(jpegQuality()) : std::nullopt;
    if (!doccam::writeImage(target, *picture, quality)) {
        doccam::reportFault(DOCCAM_FAULT_STILL, target + " could not be written");
    }
    return 0;
}

int TempImgToPdf(char* path, cv::Mat img) {
    const std::string target = textOf(path);
    const std::string picture = temporaryJpeg(target);
    const bool written = doccam::writeImage(picture, img, jpegQuality());
    pdf_start(target.c_str());
    if (!written && doccam::fileExists(picture.c_str())) {
        // A picture left by an earlier page of that name must not pass for this one.
        error_handler(HPDF_FILE_IO_ERROR, 0, nullptr);
    } else {
        pdf_addPage(picture.c_str());
    }
    pdf_end();
    return 0;
}
