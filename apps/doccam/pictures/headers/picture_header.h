// What a picture file says of itself, looked up by hand before any decoder sees it.
#pragma once

#include "pictures/headers/file_bytes.h"

#include <cstdint>
#include <optional>

namespace doccam::host {

struct PictureHeader {
    std::uint32_t width = 0; // of the first page, never 0
    std::uint32_t height = 0;
    std::uint64_t pixels = 0;       // of all pages; what tiles have too many counts
    std::uint64_t decoderBytes = 0; // working memory that decoding takes beside the pixels
    std::uint64_t passes = 1;       // how often the decoder goes over all pixels
    bool exif = false;              // may be shown otherwise than it is stored
};

// The header of a JPEG, PNG, TIFF, BMP, WebP or PNM file. None for any other content, as for what
// GDAL or GDCM would read: some of their formats name other files, and GDCM ends the process over a
// damaged one. None either for a header that ends early or that OpenCV cannot read.
std::optional<PictureHeader> readPictureHeader(FileBytes& file);

} // namespace doccam::host
