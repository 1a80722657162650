#include "documents/paper/density_stamp.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace doccam::host {
namespace {

using Bytes = std::vector<unsigned char>;

bool startsWith(const Bytes& file, std::size_t at, std::string_view text) {
    return file.size() >= at + text.size() &&
           std::equal(text.begin(), text.end(), file.begin() + static_cast<std::ptrdiff_t>(at),
                      [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; });
}

void putBigEndian(Bytes& bytes, std::uint32_t value, unsigned count) {
    for (unsigned i = count; i-- > 0;) {
        bytes.push_back(static_cast<unsigned char>(value >> 8 * i));
    }
}

void putLittleEndian(Bytes& bytes, std::uint32_t value, unsigned count) {
    for (unsigned i = 0; i < count; ++i) {
        bytes.push_back(static_cast<unsigned char>(value >> 8 * i));
    }
}

std::uint32_t littleEndian(const Bytes& bytes, std::size_t at, unsigned count) {
    std::uint32_t value = 0;
    for (unsigned i = 0; i < count && at + i < bytes.size(); ++i) {
        value |= static_cast<std::uint32_t>(bytes[at + i]) << 8 * i;
    }
    return value;
}

std::uint32_t rounded(double value) {
    return static_cast<std::uint32_t>(std::lround(value));
}

constexpr std::size_t kTiffField = 12;
constexpr std::uint32_t kParts = 1000; // of a pixel per inch

struct TiffField {
    std::uint32_t tag = 0;
    Bytes bytes;
};

TiffField tiffField(std::uint32_t tag, std::uint32_t type, std::uint32_t value) {
    TiffField field{tag, {}};
    putLittleEndian(field.bytes, tag, 2);
    putLittleEndian(field.bytes, type, 2);
    putLittleEndian(field.bytes, 1, 4);
    putLittleEndian(field.bytes, value, 4);
    return field;
}

// The fields of a density whose two ratios are at an offset, sorted by tag.
std::vector<TiffField> densityFields(std::uint32_t ratios) {
    constexpr std::uint32_t kShort = 3;
    constexpr std::uint32_t kRational = 5;
    constexpr std::uint32_t kInches = 2;
    return {tiffField(282, kRational, ratios), tiffField(283, kRational, ratios + 8),
            tiffField(296, kShort, kInches)};
}

void putRatios(Bytes& bytes, Density density) {
    for (const double way : {density.across, density.down}) {
        putLittleEndian(bytes, rounded(way * kParts), 4);
        putLittleEndian(bytes, kParts, 4);
    }
}

void putDirectory(Bytes& bytes, const std::vector<TiffField>& fields, std::uint32_t next) {
    putLittleEndian(bytes, static_cast<std::uint32_t>(fields.size()), 2);
    for (const TiffField& field : fields) {
        bytes.insert(bytes.end(), field.bytes.begin(), field.bytes.end());
    }
    putLittleEndian(bytes, next, 4);
}

void putText(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

Bytes exifOf(Density density) {
    constexpr std::uint32_t kFirst = 8;
    const auto fields = densityFields(kFirst + 2 + 3 * kTiffField + 4);
    Bytes tiff;
    putText(tiff, std::string_view("II*\0", 4));
    putLittleEndian(tiff, kFirst, 4);
    putDirectory(tiff, fields, 0);
    putRatios(tiff, density);
    Bytes segment{0xFF, 0xE1};
    putBigEndian(segment, static_cast<std::uint32_t>(tiff.size() + 8), 2);
    putText(segment, std::string_view("Exif\0\0", 6));
    segment.insert(segment.end(), tiff.begin(), tiff.end());
    return segment;
}

bool isWhole(double number) {
    constexpr double kExact = 0.5 / kParts;
    return std::abs(number - std::round(number)) < kExact;
}

// Over the unit and the density of libjpeg's JFIF header.
void stampJpeg(Bytes& file, Density density) {
    constexpr std::ptrdiff_t kUnit = 13;
    constexpr std::ptrdiff_t kEndOfHeader = 20;
    if (!startsWith(file, 2, "\xFF\xE0") || !startsWith(file, 6, "JFIF") ||
        file.size() < kEndOfHeader) {
        return;
    }
    Bytes values{1};
    for (const double way : {density.across, density.down}) {
        putBigEndian(values, std::clamp<std::uint32_t>(rounded(way), 1, 0xFFFF), 2);
    }
    std::copy(values.begin(), values.end(), file.begin() + kUnit);
    if (!isWhole(density.across) || !isWhole(density.down)) {
        const Bytes exif = exifOf(density);
        file.insert(file.begin() + kEndOfHeader, exif.begin(), exif.end());
    }
}

// In a chunk after the header.
void stampPng(Bytes& file, Density density) {
    constexpr std::ptrdiff_t kEndOfHeader = 33;
    constexpr double kInchesPerMetre = 1000 / kInch;
    Bytes chunk;
    putBigEndian(chunk, 9, 4);
    putText(chunk, "pHYs");
    putBigEndian(chunk, rounded(density.across * kInchesPerMetre), 4);
    putBigEndian(chunk, rounded(density.down * kInchesPerMetre), 4);
    chunk.push_back(1);
    const auto sum = crc32(0, chunk.data() + 4, static_cast<uInt>(chunk.size() - 4));
    putBigEndian(chunk, static_cast<std::uint32_t>(sum), 4);
    if (file.size() > kEndOfHeader) {
        file.insert(file.begin() + kEndOfHeader, chunk.begin(), chunk.end());
    }
}

std::vector<TiffField> tiffFields(const Bytes& file, std::size_t directory) {
    std::vector<TiffField> fields;
    for (std::uint32_t i = 0; i < littleEndian(file, directory, 2); ++i) {
        const auto at = file.begin() + static_cast<std::ptrdiff_t>(directory + 2 + kTiffField * i);
        fields.push_back(
            {littleEndian(file, directory + 2 + kTiffField * i, 2), Bytes(at, at + kTiffField)});
    }
    return fields;
}

// Adds a directory with three more fields at the end, which takes the place of the first.
void stampTiff(Bytes& file, Density density) {
    const std::size_t old = littleEndian(file, 4, 4);
    const std::size_t end = old + 2 + kTiffField * littleEndian(file, old, 2);
    if (old == 0 || end + 4 > file.size()) {
        return;
    }
    std::vector<TiffField> fields = tiffFields(file, old);
    std::erase_if(fields, [](const TiffField& field) {
        return field.tag == 282 || field.tag == 283 || field.tag == 296;
    });
    const std::uint32_t next = littleEndian(file, end, 4);
    file.resize(file.size() + file.size() % 2);
    const auto ratios = static_cast<std::uint32_t>(file.size());
    putRatios(file, density);
    const auto added = densityFields(ratios);
    fields.insert(fields.end(), added.begin(), added.end());
    std::sort(fields.begin(), fields.end(),
              [](const TiffField& a, const TiffField& b) { return a.tag < b.tag; });
    Bytes place;
    putLittleEndian(place, static_cast<std::uint32_t>(file.size()), 4);
    std::copy(place.begin(), place.end(), file.begin() + 4);
    putDirectory(file, fields, next);
}

} // namespace

void stampDensity(std::vector<unsigned char>& file, Density density) {
    if (startsWith(file, 0, "\xFF\xD8\xFF")) {
        stampJpeg(file, density);
    } else if (startsWith(file, 0, "\x89PNG")) {
        stampPng(file, density);
    } else if (startsWith(file, 0, std::string_view("II*\0", 4))) {
        stampTiff(file, density);
    }
}

void stampDensity(std::vector<unsigned char>& file, cv::Size pixels, const SizedPage& page) {
    if (page.isKnown()) {
        stampDensity(file, densityOf(pixels, page.picture));
    }
}

} // namespace doccam::host
