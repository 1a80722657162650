// Four by four pixels of three bytes turned at once, where the machine has the instructions for it.
#pragma once

#include <cstddef>

namespace doccam {

inline constexpr int kTile = 4; // pixels, a tile's side

// A piece of a picture's memory and how far its rows lie apart, which may be backwards.
struct Rows {
    const unsigned char* first;
    std::ptrdiff_t step;
};

struct WritableRows {
    unsigned char* first;
    std::ptrdiff_t step;
};

// How many bytes of a source row tiles read: more than the pixels that they turn have.
inline constexpr int kTileReads = 16;

// Whether turnTiles() may be called on this machine.
bool haveTiles();

// Makes kTile columns of source, count * kTile rows long, the first kTile rows of target.
void turnTiles(Rows source, WritableRows target, int count);

} // namespace doccam
