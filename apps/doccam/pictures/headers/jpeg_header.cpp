// JPEG: the frame header, and the number of scans.
#include "pictures/headers/picture_header.h"

#include <algorithm>
#include <vector>

namespace doccam::host {
namespace {

constexpr std::uint8_t kStartOfScan = 0xDA;
constexpr std::uint8_t kEndOfImage = 0xD9;
constexpr std::uint8_t kApp1 = 0xE1;
constexpr unsigned kMaximumSampling = 4;
constexpr std::uint64_t kMaximumSegments = 10000; // libjpeg goes over all kept ones for each
constexpr std::uint64_t kBlockSide = 8;
constexpr std::uint64_t kBlockBytes = kBlockSide * kBlockSide * 2;

bool isFrameHeader(std::uint8_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool isProgressive(std::uint8_t marker) {
    return marker == 0xC2 || marker == 0xCA;
}

bool standsAlone(std::uint8_t marker) {
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
}

bool isReserved(std::uint8_t marker) {
    return marker > 0x01 && marker < 0xC0;
}

std::uint64_t unitsIn(std::uint64_t pixels, std::uint64_t unit) {
    return (pixels + unit - 1) / unit;
}

struct Sampling {
    unsigned across = 0;
    unsigned down = 0;
};

// libjpeg keeps all coefficients of a picture with several scans.
std::uint64_t coefficientBytes(const PictureHeader& header, const std::vector<Sampling>& parts) {
    Sampling maximum{1, 1};
    for (const Sampling& part : parts) {
        maximum = {std::max(maximum.across, part.across), std::max(maximum.down, part.down)};
    }
    const std::uint64_t unitsAcross = unitsIn(header.width, maximum.across * kBlockSide);
    const std::uint64_t unitsDown = unitsIn(header.height, maximum.down * kBlockSide);
    std::uint64_t blocks = 0;
    for (const Sampling& part : parts) {
        blocks += unitsAcross * part.across * unitsDown * part.down;
    }
    return blocks * kBlockBytes;
}

// Iterates over the markers like libjpeg.
class JpegHeader {
  public:
    explicit JpegHeader(FileBytes& file)
      : file_(file) {}

    std::optional<PictureHeader> read() {
        while (const auto marker = nextMarker()) {
            if (isReserved(*marker) && scans_ > 0) {
                // Searching for the next restart marker, libjpeg drops the marker but not what
                // follows.
                continue;
            }
            if (*marker == kEndOfImage || isReserved(*marker) ||
                (!standsAlone(*marker) && !take(*marker))) {
                break;
            }
        }
        if (!header_ || scans_ == 0 || segments_ > kMaximumSegments) {
            return std::nullopt;
        }
        if (inScans_) {
            header_->decoderBytes = coefficientBytes(*header_, parts_);
            header_->passes = scans_;
        }
        header_->exif = exif_;
        return header_;
    }

  private:
    // None at the end of the file.
    std::optional<std::uint8_t> nextMarker() {
        bool afterFill = false;
        while (const auto byte = file_.at(at_)) {
            ++at_;
            // 0xFF followed by zero is an ordinary byte of a scan.
            if (afterFill && *byte != 0xFF && *byte != 0) {
                return byte;
            }
            afterFill = *byte == 0xFF;
        }
        return std::nullopt;
    }

    // False for a segment on which libjpeg gives up.
    bool take(std::uint8_t marker) {
        if (isFrameHeader(marker)) {
            if (header_ || !readFrame()) {
                return false;
            }
            inScans_ = isProgressive(marker);
        } else if (marker == kStartOfScan) {
            const auto parts = file_.at(at_ + 2);
            inScans_ = inScans_ || parts.value_or(0) < parts_.size();
            ++scans_;
        }
        exif_ = exif_ || (marker == kApp1 && file_.startsWith(at_ + 2, "Exif"));
        const auto length = file_.bigEndian(at_, 2);
        at_ += std::max<std::uint64_t>(length.value_or(0), 2);
        return ++segments_ <= kMaximumSegments && length;
    }

    bool readFrame() {
        const auto height = file_.bigEndian(at_ + 3, 2);
        const auto width = file_.bigEndian(at_ + 5, 2);
        const auto count = file_.at(at_ + 7);
        header_ = plainHeader(width.value_or(0), height.value_or(0));
        for (unsigned i = 0; i < count.value_or(0); ++i) {
            const unsigned factors = file_.at(at_ + 9 + std::uint64_t{3} * i).value_or(0);
            const Sampling part{factors >> 4, factors & 15};
            if (part.across < 1 || part.across > kMaximumSampling || part.down < 1 ||
                part.down > kMaximumSampling) {
                return false;
            }
            parts_.push_back(part);
        }
        return header_ && !parts_.empty();
    }

    FileBytes& file_;
    std::uint64_t at_ = 0; // past the last marker: its segment, starting with its length
    std::optional<PictureHeader> header_;
    std::vector<Sampling> parts_;
    std::uint64_t scans_ = 0;
    std::uint64_t segments_ = 0;
    bool inScans_ = false;
    bool exif_ = false;
};

} // namespace

std::optional<PictureHeader> readJpegHeader(FileBytes& file) {
    return JpegHeader(file).read();
}

} // namespace doccam::host
