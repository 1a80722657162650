#include "pictures/headers/picture_header.h"

#include <algorithm>
#include <cctype>

namespace doccam::host {
namespace {

constexpr std::uint64_t kOldHeader = 12;

// The height is negative in files stored top row first.
std::uint64_t magnitude(std::uint64_t value) {
    constexpr std::uint64_t kSign = std::uint64_t{1} << 31;
    return value < kSign ? value : 2 * kSign - value;
}

// BMP, with both forms of its header.
std::optional<PictureHeader> readBmp(FileBytes& file) {
    const bool old = file.littleEndian(14, 4) == kOldHeader;
    const auto width = file.littleEndian(18, old ? 2 : 4);
    const auto height = file.littleEndian(old ? 20 : 22, old ? 2 : 4);
    return width && height ? plainHeader(*width, old ? *height : magnitude(*height)) : std::nullopt;
}

constexpr std::uint64_t kSignatureBytes = 8;
constexpr std::uint64_t kChunkFrame = 12;           // length, name, checksum
constexpr std::uint64_t kUnpackedMaximum = 8000000; // libpng's own limit for each
constexpr std::uint64_t kInflation = 1032;          // deflate's maximum ratio

bool isPacked(FileBytes& file, std::uint64_t chunk) {
    return file.startsWith(chunk + 4, "zTXt") || file.startsWith(chunk + 4, "iTXt") ||
           file.startsWith(chunk + 4, "iCCP");
}

std::uint64_t unpackedBytes(FileBytes& file) {
    std::uint64_t bytes = 0;
    std::uint64_t chunk = kSignatureBytes;
    while (const auto length = file.bigEndian(chunk, 4)) {
        if (isPacked(file, chunk)) {
            bytes += std::min(kUnpackedMaximum, *length * kInflation);
        }
        chunk += *length + kChunkFrame;
    }
    return bytes;
}

// PNG: the size, and the texts and profiles, which libpng always decompresses.
std::optional<PictureHeader> readPng(FileBytes& file) {
    const auto width = file.bigEndian(16, 4);
    const auto height = file.bigEndian(20, 4);
    auto header = file.startsWith(12, "IHDR") && width && height ? plainHeader(*width, *height)
                                                                 : std::nullopt;
    if (header) {
        header->decoderBytes = unpackedBytes(file);
    }
    return header;
}

constexpr std::uint64_t kMaximumNumber = 1000000000;

// Moves at past blanks and comments.
void skipBlanks(FileBytes& file, std::uint64_t& at) {
    bool comment = false;
    for (auto byte = file.at(at); byte; byte = file.at(++at)) {
        comment = *byte == '#' || (comment && *byte != '\n' && *byte != '\r');
        if (!comment && std::isspace(*byte) == 0) {
            return;
        }
    }
}

std::uint64_t readNumber(FileBytes& file, std::uint64_t& at) {
    skipBlanks(file, at);
    std::uint64_t number = 0;
    for (auto byte = file.at(at); byte && std::isdigit(*byte) != 0; byte = file.at(++at)) {
        number = number * 10 + (*byte - '0');
        if (number > kMaximumNumber) {
            return kMaximumNumber;
        }
    }
    return number;
}

// PBM, PGM and PPM, plain or raw: two numbers between blanks and comments.
std::optional<PictureHeader> readPnm(FileBytes& file) {
    std::uint64_t at = 2;
    const std::uint64_t width = readNumber(file, at);
    const std::uint64_t height = readNumber(file, at);
    return plainHeader(width, height);
}

constexpr std::uint64_t kFirstChunk = 12;
constexpr std::uint64_t kContent = kFirstChunk + 8;

// libwebp holds the whole picture with alpha a second time, and OpenCV a third time.
std::optional<PictureHeader> heldWhole(std::optional<PictureHeader> header) {
    constexpr std::uint64_t kBytesPerPixel = 8;
    if (header) {
        header->decoderBytes = header->pixels * kBytesPerPixel;
    }
    return header;
}

// WebP: lossy, lossless and extended files.
std::optional<PictureHeader> readWebp(FileBytes& file) {
    if (file.startsWith(kFirstChunk, "VP8 ")) {
        constexpr std::uint64_t kSideMask = 0x3FFF;
        const auto width = file.littleEndian(kContent + 6, 2);
        const auto height = file.littleEndian(kContent + 8, 2);
        return width && height ? plainHeader(*width & kSideMask, *height & kSideMask)
                               : std::nullopt;
    }
    if (file.startsWith(kFirstChunk, "VP8L")) {
        constexpr unsigned kSideBits = 14;
        constexpr std::uint64_t kSideMask = (1U << kSideBits) - 1;
        const auto sides = file.littleEndian(kContent + 1, 4);
        return sides ? heldWhole(plainHeader((*sides & kSideMask) + 1,
                                             (*sides >> kSideBits & kSideMask) + 1))
                     : std::nullopt;
    }
    const auto width = file.littleEndian(kContent + 4, 3);
    const auto height = file.littleEndian(kContent + 7, 3);
    return file.startsWith(kFirstChunk, "VP8X") && width && height
               ? heldWhole(plainHeader(*width + 1, *height + 1))
               : std::nullopt;
}

bool beginsAsTiff(FileBytes& file) {
    const auto order = file.bigEndian(0, 2).value_or(0);
    if (order != 0x4949 && order != 0x4D4D) {
        return false;
    }
    const auto read = order == 0x4949 ? file.littleEndian(2, 2) : file.bigEndian(2, 2);
    const auto version = read.value_or(0);
    return version == 42 || version == 43;
}

bool beginsAsPnm(FileBytes& file) {
    const auto kind = file.at(1);
    return file.startsWith(0, "P") && kind >= '1' && kind <= '6';
}

} // namespace

std::optional<PictureHeader> plainHeader(std::uint64_t width, std::uint64_t height) {
    constexpr std::uint64_t kLongest = 1 << 20; // OpenCV's own limit
    if (width == 0 || height == 0 || width > kLongest || height > kLongest) {
        return std::nullopt;
    }
    PictureHeader header;
    header.width = static_cast<std::uint32_t>(width);
    header.height = static_cast<std::uint32_t>(height);
    header.pixels = width * height;
    return header;
}

std::optional<PictureHeader> readPictureHeader(FileBytes& file) {
    if (file.startsWith(0, "\xFF\xD8\xFF")) {
        return readJpegHeader(file);
    }
    if (file.startsWith(0, "\x89PNG\r\n\x1A\n")) {
        return readPng(file);
    }
    if (beginsAsTiff(file)) {
        return readTiffHeader(file);
    }
    if (file.startsWith(0, "BM")) {
        return readBmp(file);
    }
    if (file.startsWith(0, "RIFF") && file.startsWith(8, "WEBP")) {
        return readWebp(file);
    }
    return beginsAsPnm(file) ? readPnm(file) : std::nullopt;
}

} // namespace doccam::host
