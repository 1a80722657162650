// Where the sheet was found most recently, and the crop of the next still.
#pragma once

#include <array>
#include <optional>

namespace doccam::record {

// The streaming thread only. CutPoint holds x0 y0 ... x3 y3 and room for more.
struct Sheet {
    std::array<int, 40> CutPoint{};
    int CutImgStartX = 0, CutImgStartY = 0, CutImgW = 0, CutImgH = 0;
    int CutLastW = 0, CutLastH = 0;
    std::optional<std::array<int, 40>> contractCutPoint; // while CutPoint is the page engine's
};

} // namespace doccam::record
