// PNG: the size, and the texts and profiles, which libpng always decompresses.
#include "pictures/headers/header_readers.h"

#include <algorithm>
#include <string>

namespace doccam::host {
namespace {

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

} // namespace

std::optional<PictureHeader> readPngHeader(FileBytes& file) {
    const auto width = file.bigEndian(16, 4);
    const auto height = file.bigEndian(20, 4);
    auto header = file.startsWith(12, "IHDR") && width && height ? plainHeader(*width, *height)
                                                                 : std::nullopt;
    if (header) {
        header->decoderBytes = unpackedBytes(file);
    }
    return header;
}

} // namespace doccam::host
