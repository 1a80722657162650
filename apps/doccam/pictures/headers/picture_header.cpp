#include "pictures/headers/picture_header.h"

#include "pictures/headers/header_readers.h"

namespace doccam::host {
namespace {

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
        return readPngHeader(file);
    }
    if (beginsAsTiff(file)) {
        return readTiffHeader(file);
    }
    if (file.startsWith(0, "BM")) {
        return readBmpHeader(file);
    }
    if (file.startsWith(0, "RIFF") && file.startsWith(8, "WEBP")) {
        return readWebpHeader(file);
    }
    return beginsAsPnm(file) ? readPnmHeader(file) : std::nullopt;
}

} // namespace doccam::host
