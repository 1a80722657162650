#include "pictures/headers/file_bytes.h"

#include "base/files/file_placement.h"

#include <fcntl.h>

namespace doccam::host {

// An ordinary open() would block on a pipe without a writer.
FileBytes::FileBytes(const std::string& path)
  : file_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
    const auto status = statusOf(file_.get());
    if (status && S_ISREG(status->st_mode)) {
        size_ = static_cast<std::uint64_t>(status->st_size);
    } else {
        file_.reset();
    }
}

bool FileBytes::load(std::uint64_t offset) {
    if (offset >= size_) {
        return false;
    }
    windowStart_ = offset;
    const ssize_t count =
        pread(file_.get(), window_.data(), window_.size(), static_cast<off_t>(offset));
    windowSize_ = count > 0 ? static_cast<std::size_t>(count) : 0;
    return windowSize_ > 0;
}

std::optional<std::uint8_t> FileBytes::at(std::uint64_t offset) {
    const bool loaded = offset >= windowStart_ && offset - windowStart_ < windowSize_;
    if (!loaded && !load(offset)) {
        return std::nullopt;
    }
    return window_[static_cast<std::size_t>(offset - windowStart_)];
}

std::optional<std::uint64_t> FileBytes::bigEndian(std::uint64_t offset, unsigned count) {
    std::uint64_t number = 0;
    for (unsigned i = 0; i < count; ++i) {
        const auto byte = at(offset + i);
        if (!byte) {
            return std::nullopt;
        }
        number = number << 8 | *byte;
    }
    return number;
}

std::optional<std::uint64_t> FileBytes::littleEndian(std::uint64_t offset, unsigned count) {
    std::uint64_t number = 0;
    for (unsigned i = 0; i < count; ++i) {
        const auto byte = at(offset + i);
        if (!byte) {
            return std::nullopt;
        }
        number |= std::uint64_t{*byte} << 8 * i;
    }
    return number;
}

bool FileBytes::startsWith(std::uint64_t offset, const std::string& text) {
    for (const char letter : text) {
        if (at(offset++) != static_cast<std::uint8_t>(letter)) {
            return false;
        }
    }
    return true;
}

} // namespace doccam::host
