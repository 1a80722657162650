#include "base/pictures/exif_orientation.h"

#include <opencv2/core.hpp>

#include <cstdint>
#include <optional>

namespace doccam {
namespace {

enum Tag : std::uint16_t {
    kImageDescription = 0x010E,
    kMake = 0x010F,
    kModel = 0x0110,
    kOrientation = 0x0112,
    kXResolution = 0x011A,
    kYResolution = 0x011B,
    kResolutionUnit = 0x0128,
    kSoftware = 0x0131,
    kDateTime = 0x0132,
    kWhitePoint = 0x013E,
    kPrimaryChromaticities = 0x013F,
    kYCbCrCoefficients = 0x0211,
    kYCbCrPositioning = 0x0213,
    kReferenceBlackWhite = 0x0214,
    kCopyright = 0x8298
};

constexpr std::size_t kFieldBytes = 12;
constexpr std::size_t kValueAt = 8; // in a field
constexpr std::size_t kRationalBytes = 8;

class Exif {
  public:
    explicit Exif(std::span<const unsigned char> data)
      : data_(data)
      , littleEndian_(data.size() > 1 && data[0] == 'I' && data[1] == 'I') {}

    std::optional<int> orientation() const;

  private:
    bool has(std::size_t offset, std::size_t count) const {
        return offset <= data_.size() && count <= data_.size() - offset;
    }

    std::optional<std::uint32_t> number(std::size_t offset, std::size_t bytes) const;
    bool isIntact(std::size_t field, std::uint16_t tag) const;
    bool hasText(std::size_t field) const;
    bool hasRationals(std::size_t field, std::size_t count) const;

    std::span<const unsigned char> data_;
    bool littleEndian_;
};

std::optional<std::uint32_t> Exif::number(std::size_t offset, std::size_t bytes) const {
    if (!has(offset, bytes)) {
        return std::nullopt;
    }
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        value = value << 8 | data_[littleEndian_ ? offset + bytes - 1 - i : offset + i];
    }
    return value;
}

// A short text stands in the field; OpenCV looks for it at the start of the data.
bool Exif::hasText(std::size_t field) const {
    constexpr std::uint32_t kMaximumInField = 4;
    const auto length = number(field + 4, 4);
    if (!length) {
        return false;
    }
    const auto offset = *length > kMaximumInField ? number(field + kValueAt, 4) : kValueAt;
    return offset && has(*offset, *length);
}

bool Exif::hasRationals(std::size_t field, std::size_t count) const {
    const auto offset = number(field + kValueAt, 4);
    return offset && has(*offset, count * kRationalBytes);
}

// Whether the value that OpenCV reads of such a field lies in the data.
bool Exif::isIntact(std::size_t field, std::uint16_t tag) const {
    switch (tag) {
    case kImageDescription:
    case kMake:
    case kModel:
    case kSoftware:
    case kDateTime:
    case kCopyright:
        return hasText(field);
    case kXResolution:
    case kYResolution:
        return hasRationals(field, 1);
    case kWhitePoint:
        return hasRationals(field, 2);
    case kYCbCrCoefficients:
        return hasRationals(field, 3);
    case kPrimaryChromaticities:
    case kReferenceBlackWhite:
        return hasRationals(field, 6);
    case kResolutionUnit:
    case kYCbCrPositioning:
        return has(field + kValueAt, 2);
    default:
        return true;
    }
}

std::optional<int> Exif::orientation() const {
    constexpr std::uint32_t kTiffMark = 42;
    const auto directory = number(4, 4);
    if (number(2, 2) != kTiffMark || !directory) {
        return std::nullopt;
    }
    const std::uint32_t count = number(*directory, 2).value_or(0);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t field = *directory + 2 + i * kFieldBytes;
        const auto tag = number(field, 2);
        if (!tag || !isIntact(field, static_cast<std::uint16_t>(*tag))) {
            return std::nullopt;
        }
        if (*tag == kOrientation) {
            return number(field + kValueAt, 2);
        }
    }
    return std::nullopt;
}

} // namespace

int exifOrientation(std::span<const unsigned char> exif) {
    return Exif(exif).orientation().value_or(1);
}

void applyOrientation(int orientation, cv::Mat& picture) {
    constexpr int kFirstOnItsSide = 5;
    constexpr int kLast = 8;
    if (orientation < 1 || orientation > kLast) {
        return;
    }
    if (orientation >= kFirstOnItsSide) {
        cv::transpose(picture, picture);
    }
    switch (orientation) {
    case 2:
    case 6:
        cv::flip(picture, picture, 1);
        break;
    case 3:
    case 7:
        cv::flip(picture, picture, -1);
        break;
    case 4:
    case 8:
        cv::flip(picture, picture, 0);
        break;
    default:
        break;
    }
}

} // namespace doccam
