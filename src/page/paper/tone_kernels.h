// The row kernels that take most of the time of a look, for each instruction set.
#pragma once

#include "base/dispatch.h"
#include "page/paper/stretched_grid.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace doccam::page {

inline constexpr int kGainOne = 4096;
inline constexpr int kShareOne = 16384;

struct ToneKernels {
    const char* instructionSet;

    // Multiplies count samples with their gains, in parts of kGainOne. As far as they are paper, in
    // parts of kShareOne, the near white turns white and ink darker.
    void (*evenRow)(const unsigned char* from, const GridRow& gain, const GridRow& paper, int count,
                    unsigned char* to);

    // 0 where a pixel is below its level, else 255.
    void (*thresholdRow)(const unsigned char* grey, const GridRow& levels, int count,
                         unsigned char* to);

    // The brightest and the darkest of a column of four, for each of count columns of rows that
    // are stride bytes apart.
    void (*columnExtremes)(const unsigned char* rows, std::size_t stride, int count,
                           unsigned char* brightest, unsigned char* darkest);

    // A row of black and white, single black pixels made white. The rows reach one pixel further
    // on both sides.
    void (*removeSpecks)(const unsigned char* above, const unsigned char* row,
                         const unsigned char* below, int count, unsigned char* to);
};

// The kernels that this machine can run, narrowest vectors first. All give the same results.
std::vector<ToneKernels> allToneKernels();

} // namespace doccam::page
