// A picture file's header, parsed before any decoder sees the file.
#pragma once

#include "pictures/headers/file_bytes.h"

#include <cstdint>
#include <optional>

namespace doccam::host {

struct PictureHeader {
    std::uint32_t width = 0; // of the first page, never 0
    std::uint32_t height = 0;
    std::uint64_t pixels = 0;       // of all pages, including the padding of tiles
    std::uint64_t decoderBytes = 0; // working memory of the decoder besides the pixels
    std::uint64_t passes = 1;       // the decoder's passes over all pixels
    bool exif = false;              // has EXIF data and thus maybe an orientation
};

// The header of a JPEG, PNG, TIFF, BMP, WebP or PNM file. None for any other content, including the
// formats of GDAL and GDCM: some of GDAL's refer to other files, and GDCM aborts the process on a
// damaged file. Also none for a header that is truncated or that OpenCV cannot read.
std::optional<PictureHeader> readPictureHeader(FileBytes& file);

// The parts of it that have a file of their own, for content with the type's signature.
std::optional<PictureHeader> readJpegHeader(FileBytes& file);
std::optional<PictureHeader> readTiffHeader(FileBytes& file);

// A header of one page that is decoded without working memory. None if a side is 0 or longer than
// OpenCV accepts.
std::optional<PictureHeader> plainHeader(std::uint64_t width, std::uint64_t height);

} // namespace doccam::host
