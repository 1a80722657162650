// The bytes of a file, wherever one looks, without reading all of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace doccam::host {

// One thread. What lies past the end of the file is not there: a look at it finds nothing.
class FileBytes {
  public:
    // Opens the file at path if it is a regular one; isOpen() is false otherwise.
    explicit FileBytes(const std::string& path);
    ~FileBytes();
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    bool isOpen() const { return file_ >= 0; }

    std::uint64_t size() const { return size_; }

    std::optional<std::uint8_t> at(std::uint64_t offset);

    // The number in count bytes from offset on, 8 bytes at most.
    std::optional<std::uint64_t> bigEndian(std::uint64_t offset, unsigned count);
    std::optional<std::uint64_t> littleEndian(std::uint64_t offset, unsigned count);

    // Whether the bytes from offset on are those of text.
    bool startsWith(std::uint64_t offset, const std::string& text);

  private:
    bool load(std::uint64_t offset);

    int file_ = -1;
    std::uint64_t size_ = 0;
    std::uint64_t windowStart_ = 0;
    std::size_t windowSize_ = 0;
    std::array<std::uint8_t, 65536> window_{};
};

} // namespace doccam::host
