// JPEG files, which a PDF takes as they are.
#pragma once

#include "documents/writer/pictures/picture_bytes.h"

#include <optional>
#include <string>

namespace doccam::host {

struct JpegPicture {
    PictureFacts facts;
    int components = 0;
    bool isInverted = false; // four inks, 255 for none, as Adobe's programs write
};

// None for a file of another kind, and for one that viewers of PDFs cannot show: with arithmetic
// coding, lossless, or of 12 bits.
std::optional<JpegPicture> jpegPicture(const Bytes& bytes);

// Throws DocumentError for one whose data end too early or are damaged, which viewers would show
// in part. Decodes it.
void requireWholeJpeg(const Bytes& bytes);

// The whole file as an image.
ImageStream asImage(const JpegPicture& picture, const std::string& file, std::uint64_t length);
ImageStream asImage(const JpegPicture& picture, Bytes bytes);

} // namespace doccam::host
