// Pictures as streams of a PDF.
#pragma once

#include <opencv2/core.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <qpdf/QPDF.hh>
#include <string>
#include <vector>

namespace doccam::host {

using Bytes = std::vector<unsigned char>;

// A part of a file.
struct Extent {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

// What a file says of the picture in it.
struct PictureFacts {
    cv::Size size;                   // as stored
    int orientation = 1;             // as Exif counts
    std::optional<cv::Size2d> dpi{}; // as stored
};

// An image of a PDF: its dictionary, and its bytes as they stand there.
struct ImageStream {
    QPDFObjectHandle dictionary;
    Bytes bytes{};                 // or
    std::string file{};            // these of a file
    std::vector<Extent> extents{}; // in order
};

// Adds the image to the document. The file is read when the document is written.
QPDFObjectHandle addImage(QPDF& document, ImageStream image);

// The dictionary of an image of that size with further entries, as a PDF writes them.
QPDFObjectHandle imageDictionary(cv::Size size, const std::string& entries);

// Throws DocumentError for bytes that a file turns out not to have.
Bytes readFile(const std::string& file);

} // namespace doccam::host
