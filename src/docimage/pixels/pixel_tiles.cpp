#include "docimage/pixels/pixel_tiles.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace doccam {

#ifdef __x86_64__

namespace {

constexpr int kTileRowBytes = 3 * kTile;

using Bytes [[gnu::vector_size(16)]] = unsigned char;
using Pixels [[gnu::vector_size(16)]] = std::uint32_t; // four; the top byte of each is scratch

using Tile = std::array<Pixels, kTile>;

[[gnu::always_inline, gnu::target("ssse3")]] inline Pixels load(const unsigned char* row) {
    Bytes packed;
    std::memcpy(&packed, row, sizeof packed);
    return std::bit_cast<Pixels>(
        __builtin_shufflevector(packed, packed, 0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11));
}

[[gnu::always_inline, gnu::target("ssse3")]] inline Bytes packed(Pixels row) {
    const auto bytes = std::bit_cast<Bytes>(row);
    return __builtin_shufflevector(bytes, bytes, 0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 15, 15, 15,
                                   15);
}

[[gnu::always_inline, gnu::target("ssse3")]] inline Tile transposed(const Tile& rows) {
    const Pixels leftUpper = __builtin_shufflevector(rows[0], rows[1], 0, 4, 1, 5);
    const Pixels rightUpper = __builtin_shufflevector(rows[0], rows[1], 2, 6, 3, 7);
    const Pixels leftLower = __builtin_shufflevector(rows[2], rows[3], 0, 4, 1, 5);
    const Pixels rightLower = __builtin_shufflevector(rows[2], rows[3], 2, 6, 3, 7);
    return {__builtin_shufflevector(leftUpper, leftLower, 0, 1, 4, 5),
            __builtin_shufflevector(leftUpper, leftLower, 2, 3, 6, 7),
            __builtin_shufflevector(rightUpper, rightLower, 0, 1, 4, 5),
            __builtin_shufflevector(rightUpper, rightLower, 2, 3, 6, 7)};
}

// Writes bytesPerRow bytes, the first of which are the tile's own.
template <std::size_t bytesPerRow>
[[gnu::always_inline, gnu::target("ssse3")]] inline void turnTile(Rows source,
                                                                  WritableRows target) {
    const Tile tile =
        transposed({load(source.first), load(source.first + source.step),
                    load(source.first + 2 * source.step), load(source.first + 3 * source.step)});
    for (std::size_t row = 0; row < kTile; ++row) {
        const Bytes pixels = packed(tile[row]);
        std::memcpy(target.first + static_cast<std::ptrdiff_t>(row) * target.step, &pixels,
                    bytesPerRow);
    }
}

} // namespace

bool haveTiles() {
    return __builtin_cpu_supports("ssse3") != 0;
}

// The next tile overwrites what a tile writes past its end; the last one writes only its own bytes.
[[gnu::target("ssse3")]] void turnTiles(Rows source, WritableRows target, int count) {
    for (; count > 1; --count) {
        turnTile<sizeof(Bytes)>(source, target);
        source.first += kTile * source.step;
        target.first += kTileRowBytes;
    }
    if (count == 1) {
        turnTile<kTileRowBytes>(source, target);
    }
}

#else

bool haveTiles() {
    return false;
}

void turnTiles(Rows /*source*/, WritableRows /*target*/, int /*count*/) {
    std::abort();
}

#endif

} // namespace doccam
