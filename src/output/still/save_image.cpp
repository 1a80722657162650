#include "output/still/save_image.h"

#include "base/pixel.h"
#include "faults/faults.h"
#include "output/files/files.h"
#include "output/files/image_file.h"
#include "output/pdf/pdf_writer.h"
#include "state/settings.h"

#include <opencv2/imgproc.hpp>

#include <array>
#include <optional>
#include <string_view>

namespace doccam {
namespace {

constexpr std::size_t kExtensionLength = 3;

int jpegQuality(const record::Settings& settings) {
    return settings.jpgQuality.load(std::memory_order_relaxed);
}

// Throws std::out_of_range for a path shorter than an extension.
std::string extensionOf(const std::string& path) {
    return path.substr(path.size() - kExtensionLength);
}

constexpr int kNeighbourhood = 179;
constexpr double kBelowMean = 19.0;

cv::Mat greyOf(const cv::Mat& page) {
    cv::Mat grey;
    cv::cvtColor(page, grey, cv::COLOR_BGR2GRAY);
    return grey;
}

// The path of the JPEG for the PDF at path; empty if path's last part has no extension.
std::string temporaryJpeg(std::string_view path) {
    const std::size_t start = path.rfind('/') + 1; // npos + 1 is 0: the start, if there is no slash
    const std::size_t dot = path.rfind('.');
    if (dot == std::string_view::npos || dot < start) {
        return {};
    }
    return homeFolder() + '/' + std::string(path.substr(start, dot - start)) + ".jpg";
}

} // namespace

std::optional<cv::Mat> pictureInMode(const cv::Mat& page, int colorMode) {
    switch (colorMode) {
    case 0:
        return page;
    case 1:
        return greyOf(page);
    case 2: {
        cv::Mat grey = greyOf(page);
        cv::adaptiveThreshold(grey, grey, kWhite, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY,
                              kNeighbourhood, kBelowMean);
        return grey;
    }
    default:
        return std::nullopt;
    }
}

bool writeOnePagePdf(const std::string& target, const cv::Mat& picture,
                     const record::Settings& settings) {
    const std::string jpeg = temporaryJpeg(target);
    const bool written = writeImage(jpeg, picture, jpegQuality(settings));
    PdfWriter writer(target);
    if (!written && fileExists(jpeg.c_str())) {
        // An earlier page's JPEG of the same name must not be used for this one.
        writer.fail(HPDF_FILE_IO_ERROR, 0);
    }
    return finishDocument(writer, std::array{jpeg});
}

void savePicture(const std::string& target, const cv::Mat& picture,
                 const record::Settings& settings) {
    const std::string extension = extensionOf(target);
    const auto quality = extension == "jpg" ? std::optional(jpegQuality(settings)) : std::nullopt;
    const bool written = extension == "pdf" ? writeOnePagePdf(target, picture, settings)
                                            : writeImage(target, picture, quality);
    if (!written) {
        reportFault(
            {DOCCAM_FAULT_STILL, DOCCAM_CAUSE_NOT_WRITTEN, target + " could not be written"});
    }
}

// A name without room for an extension is refused before the page is looked at.
void savePage(const std::string& target, const cv::Mat& page, const record::Settings& settings) {
    static_cast<void>(extensionOf(target));
    const auto picture = pictureInMode(page, settings.colorMode.load(std::memory_order_relaxed));
    if (picture) {
        savePicture(target, *picture, settings);
    }
}

} // namespace doccam
