// Parsers for the headers of types in a file of their own, for content with the type's signature.
#pragma once

#include "pictures/headers/picture_header.h"

namespace doccam::host {

std::optional<PictureHeader> readJpegHeader(FileBytes& file);
std::optional<PictureHeader> readTiffHeader(FileBytes& file);

// A header of one page that is decoded without working memory. None if a side is 0 or longer than
// OpenCV accepts.
std::optional<PictureHeader> plainHeader(std::uint64_t width, std::uint64_t height);

} // namespace doccam::host
