// BMP, with both forms of its header.
#include "pictures/headers/header_readers.h"

namespace doccam::host {
namespace {

constexpr std::uint64_t kOldHeader = 12;

// The height is negative in files stored top row first.
std::uint64_t magnitude(std::uint64_t value) {
    constexpr std::uint64_t kSign = std::uint64_t{1} << 31;
    return value < kSign ? value : 2 * kSign - value;
}

} // namespace

std::optional<PictureHeader> readBmpHeader(FileBytes& file) {
    const bool old = file.littleEndian(14, 4) == kOldHeader;
    const auto width = file.littleEndian(18, old ? 2 : 4);
    const auto height = file.littleEndian(old ? 20 : 22, old ? 2 : 4);
    return width && height ? plainHeader(*width, old ? *height : magnitude(*height)) : std::nullopt;
}

} // namespace doccam::host
