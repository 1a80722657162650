#include "modules/mjpeg/jpeg_header.h"

#include <cstddef>
#include <cstring>

namespace doccam {
namespace {

constexpr unsigned char kFirstMarker = 0xC0;
constexpr unsigned char kLastMarker = 0xFE;
constexpr unsigned char kLosslessFrame = 0xF7;
constexpr unsigned char kEndOfPicture = 0xD9;

bool startsFrame(unsigned char marker) {
    return (marker >= 0xC0 && marker <= 0xC3) || marker == kLosslessFrame;
}

// Segments that decoders skip as a whole: tables, scans, application data and comments. After any
// other marker they search for the next one at once.
bool hasLength(unsigned char marker) {
    return marker == 0xC4 || marker == 0xDA || marker == 0xDB || marker == 0xDD ||
           (marker >= 0xE0 && marker <= 0xEF) || marker == 0xF8 || marker == 0xFE;
}

// Bytes missing past the end count as zero, as for decoders with padded data.
int bigEndian(std::span<const unsigned char> bytes, std::size_t at) {
    const auto byte = [bytes](std::size_t i) { return i < bytes.size() ? int{bytes[i]} : 0; };
    return byte(at) << 8 | byte(at + 1);
}

} // namespace

// The position of the next marker. Bytes between segments are skipped, as decoders do.
std::size_t AnnouncedSizes::nextMarker() const {
    std::size_t at = at_;
    while (at + 1 < data_.size()) {
        const void* const found = std::memchr(&data_[at], 0xFF, data_.size() - 1 - at);
        if (found == nullptr) {
            break;
        }
        at = static_cast<std::size_t>(static_cast<const unsigned char*>(found) - data_.data());
        if (data_[at + 1] >= kFirstMarker && data_[at + 1] <= kLastMarker) {
            return at;
        }
        ++at;
    }
    return data_.size();
}

std::optional<cv::Size> AnnouncedSizes::next() {
    for (at_ = nextMarker(); at_ < data_.size(); at_ = nextMarker()) {
        const unsigned char marker = data_[at_ + 1];
        at_ += 2;
        if (marker == kEndOfPicture && found_) {
            break;
        }
        const std::size_t header = at_;
        at_ += hasLength(marker) ? static_cast<std::size_t>(bigEndian(data_, header)) : 0;
        if (startsFrame(marker)) {
            found_ = true;
            return cv::Size(bigEndian(data_, header + 5), bigEndian(data_, header + 3));
        }
    }
    return std::nullopt;
}

std::vector<cv::Size> announcedSizes(std::span<const unsigned char> data) {
    std::vector<cv::Size> all;
    AnnouncedSizes sizes(data);
    while (const auto size = sizes.next()) {
        all.push_back(*size);
    }
    return all;
}

} // namespace doccam
