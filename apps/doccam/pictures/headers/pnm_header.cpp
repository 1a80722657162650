// PBM, PGM and PPM, plain or raw: two numbers between blanks and comments.
#include "pictures/headers/header_readers.h"

#include <cctype>

namespace doccam::host {
namespace {

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

} // namespace

std::optional<PictureHeader> readPnmHeader(FileBytes& file) {
    std::uint64_t at = 2;
    const std::uint64_t width = readNumber(file, at);
    const std::uint64_t height = readNumber(file, at);
    return plainHeader(width, height);
}

} // namespace doccam::host
