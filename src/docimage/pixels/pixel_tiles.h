// Turning tiles of four by four three-byte pixels with SSSE3.
#pragma once

#include <cstddef>

namespace doccam {

inline constexpr int kTile = 4; // side of a tile, in pixels

// A picture's memory and the distance between its rows, which may be negative.
struct Rows {
    const unsigned char* first;
    std::ptrdiff_t step;
};

struct WritableRows {
    unsigned char* first;
    std::ptrdiff_t step;
};

// The bytes that a tile reads of a source row: more than its pixels have.
inline constexpr int kTileReads = 16;

// Whether turnTiles() may be called on this machine.
bool haveTiles();

// Makes kTile columns of source, count * kTile rows long, the first kTile rows of target.
void turnTiles(Rows source, WritableRows target, int count);

} // namespace doccam
