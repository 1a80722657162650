// WebP: lossy, lossless and extended files.
#include "pictures/headers/header_readers.h"

namespace doccam::host {
namespace {

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

} // namespace

std::optional<PictureHeader> readWebpHeader(FileBytes& file) {
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

} // namespace doccam::host
