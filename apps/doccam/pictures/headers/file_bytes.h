// Random access to a file's bytes without reading all of it.
#pragma once

#include "base/unique_fd.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace doccam::host {

// Not thread-safe. Past the end of the file there are no bytes.
class FileBytes {
  public:
    // Opens the file at path if it is a regular file; otherwise isOpen() is false.
    explicit FileBytes(const std::string& path);

    bool isOpen() const { return file_.isOpen(); }

    std::uint64_t size() const { return size_; }

    std::optional<std::uint8_t> at(std::uint64_t offset);

    // The number in count bytes, at most 8, at offset.
    std::optional<std::uint64_t> bigEndian(std::uint64_t offset, unsigned count);
    std::optional<std::uint64_t> littleEndian(std::uint64_t offset, unsigned count);

    // Whether text is at offset.
    bool startsWith(std::uint64_t offset, const std::string& text);

  private:
    bool load(std::uint64_t offset);

    UniqueFd file_;
    std::uint64_t size_ = 0;
    std::uint64_t windowStart_ = 0;
    std::size_t windowSize_ = 0;
    std::array<std::uint8_t, 65536> window_{};
};

} // namespace doccam::host
