// A picture in cells, each with what tells codes from text, pictures and paper.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstdint>
#include <vector>

namespace doccam::codes {

enum class Pattern : std::uint8_t {
    kNone,
    kBars,  // edges in one direction alone
    kMatrix // edges in several, and as much ink as paper
};

struct Cell {
    Pattern pattern = Pattern::kNone;
    float angle = 0; // across the bars, in radians, 0 to pi
    float ink = 0;   // the part of its pixels that is dark
};

struct CodeCells {
    static constexpr int kSide = 8; // pixels

    int columns = 0;
    int rows = 0;
    std::vector<Cell> cells; // row by row

    const Cell& at(int column, int row) const {
        return cells[static_cast<std::size_t>(row) * static_cast<unsigned>(columns) +
                     static_cast<unsigned>(column)];
    }

    Cell& at(int column, int row) {
        return const_cast<Cell&>(static_cast<const CodeCells&>(*this).at(column, row));
    }
};

// Of an 8-bit grey picture; less than a cell at its right and lower sides is left out.
CodeCells codeCells(const cv::Mat& grey);

} // namespace doccam::codes
