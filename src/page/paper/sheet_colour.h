// The colour of a sheet that is not white.
#pragma once

#include "page/paper/paper_cells.h"

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// What a sheet is made of, between its print.
struct Ground {
    const Region* region = nullptr;
    bool white = true;
    cv::Scalar colour = cv::Scalar::all(1); // channel by channel, as parts of white
};

// The ground of a sheet whose palest large region is main. Lamps give white paper a cast, amber or
// blue, so only colours that no lamp has, and dark ones around something paler, are the sheet's
// own.
Ground groundOf(const Cells& cells, const Region& main);

} // namespace doccam::page
