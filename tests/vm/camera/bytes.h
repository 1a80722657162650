// Integers in byte sequences: USB is little-endian, USB/IP big-endian.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace doccam::vm {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

// Appends the lowest size bytes of value, least significant first.
inline void appendLittle(Bytes& out, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) {
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

inline void appendBig32(Bytes& out, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        out.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

// The integer of size bytes at offset, which must lie inside the data.
inline std::uint32_t little(ByteView data, std::size_t offset, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = size; i-- > 0;) {
        value = value << 8 | data[offset + i];
    }
    return value;
}

inline std::uint32_t big32(ByteView data, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | data[offset + i];
    }
    return value;
}

} // namespace doccam::vm
