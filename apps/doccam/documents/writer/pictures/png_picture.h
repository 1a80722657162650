// PNG files, whose compressed rows a PDF takes as they are.
#pragma once

#include "documents/writer/pictures/picture_bytes.h"

#include <optional>

namespace doccam::host {

struct PngPicture {
    PictureFacts facts;
    int bits = 0;
    int colourType = 0;
    bool isInterlaced = false;
    bool hasAlpha = false; // or a transparent colour
    Bytes palette{};
    std::vector<Extent> data{};
};

// None for a file of another kind. Throws DocumentError for one that ends too early.
std::optional<PngPicture> pngPicture(const Bytes& bytes);

// The picture of such a file as an image: black and white as CCITT G4, rows as they are stored, and
// what a PDF cannot take so - interlaced or transparent - decoded, on white paper.
ImageStream asImage(const PngPicture& picture, const Bytes& file);

// A picture, 8-bit, grey or blue first, without loss: of two colours as CCITT G4.
ImageStream losslessImage(const cv::Mat& picture);

} // namespace doccam::host
