#include "pictures/picture_limits.h"

#include "host/failure.h"
#include "host/texts.h"

#include <cstdlib>

namespace doccam::host {
namespace {

constexpr std::uint64_t kMillion = 1000000;
constexpr std::uint64_t kPictureBytes = 3;  // per pixel: blue, green and red
constexpr std::uint64_t kDecodingBytes = 8; // per allowed pixel
constexpr std::uint64_t kWorkingBytes = 9;

// Over all allowed pixels; an ordinary progressive JPEG has ten scans.
constexpr std::uint64_t kPasses = 20;

int setting(const char* name, int otherwise) {
    constexpr int kMaximum = 1000;
    const char* const set = std::getenv(name);
    if (set == nullptr || *set == '\0') {
        return otherwise;
    }
    const int value = parseNumber<int>(set).value_or(0);
    if (value < 1 || value > kMaximum) {
        throw Failure(kUsage, std::string("The environment sets ") + name + " to \"" + set +
                                  "\"; give a whole number from 1 to 1000.");
    }
    return value;
}

} // namespace

std::uint64_t PictureLimits::decodingBytes() const {
    return megapixels * kMillion * kDecodingBytes;
}

std::uint64_t PictureLimits::workingBytes() const {
    return megapixels * kMillion * kWorkingBytes;
}

PictureLimits pictureLimits() {
    PictureLimits limits;
    limits.megapixels = static_cast<std::uint64_t>(
        setting("DOCCAM_MAX_MEGAPIXELS", static_cast<int>(limits.megapixels)));
    limits.reading = std::chrono::seconds(
        setting("DOCCAM_READ_SECONDS", static_cast<int>(limits.reading.count())));
    return limits;
}

void refuseBeyond(const PictureLimits& limits, const PictureHeader& header,
                  const std::string& name) {
    const std::uint64_t pixels = limits.megapixels * kMillion;
    if (header.pixels > pixels) {
        throw Failure(kUsage, "The picture " + name + " has " +
                                  std::to_string((header.pixels + kMillion - 1) / kMillion) +
                                  " megapixels, and " + std::to_string(limits.megapixels) +
                                  " are the maximum; make it smaller, or set "
                                  "DOCCAM_MAX_MEGAPIXELS.");
    }
    if (header.decoderBytes + header.pixels * kPictureBytes > limits.decodingBytes() ||
        header.pixels * header.passes > pixels * kPasses) {
        throw Failure(kUsage, "The picture " + name +
                                  " is stored so that decoding it takes too much memory or time; "
                                  "save it anew as a plain JPEG or PNG file.");
    }
}

} // namespace doccam::host
