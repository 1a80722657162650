#include "documents/writer/file_parts.h"

#include "base/pictures/exif_orientation.h"
#include "documents/writer/pdf_pages.h"
#include "documents/writer/pictures/jpeg_picture.h"
#include "documents/writer/pictures/png_picture.h"
#include "documents/writer/pictures/tiff_pictures.h"

#include <utility>

namespace doccam::host {
namespace {

FilePart partOf(const PictureFacts& facts) {
    constexpr int kFirstOnItsSide = 5;
    FilePart part{facts.size, facts.dpi};
    if (facts.orientation >= kFirstOnItsSide) {
        std::swap(part.pixels.width, part.pixels.height);
        if (part.dpi) {
            std::swap(part.dpi->width, part.dpi->height);
        }
    }
    return part;
}

std::vector<FilePart> pdfParts(const std::string& file) {
    std::vector<FilePart> parts;
    for (const Millimetres& size : pageSizes(*openPdf(file))) {
        parts.push_back({{}, {}, size});
    }
    return parts;
}

} // namespace

std::vector<FilePart> fileParts(const std::string& file) {
    if (isPdf(file)) {
        return pdfParts(file);
    }
    const Bytes bytes = readFile(file);
    if (const auto jpeg = jpegPicture(bytes)) {
        requireWholeJpeg(bytes);
        return {partOf(jpeg->facts)};
    }
    if (const auto png = pngPicture(bytes)) {
        return {partOf(png->facts)};
    }
    std::vector<FilePart> parts;
    if (isTiff(bytes)) {
        for (const PictureFacts& facts : tiffPictures(file)) {
            parts.push_back(partOf(facts));
        }
    }
    return parts;
}

cv::Mat uprightTiff(const std::string& file, int part) {
    const int orientation = tiffPicture(file, part).orientation;
    cv::Mat picture = readTiff(file, part);
    applyOrientation(orientation, picture);
    return picture;
}

} // namespace doccam::host
