// Choosing a page's true size from all that is known of it.
#pragma once

#include "documents/paper/page_size.h"

#include <optional>

namespace doccam::host {

// What the user says of pages.
struct PaperOptions {
    std::optional<double> dpi{};
    std::optional<Millimetres> paper{};

    bool operator==(const PaperOptions&) const = default;
};

struct SizeClues {
    PaperOptions options{};
    std::optional<Millimetres> calibrated{}; // by a calibration of the camera
    std::optional<Millimetres> inFile{};     // by the density in the picture's file
};

// The true size of a page of so many pixels, by the surest of the clues, or else by a guess: the
// paper with the picture's proportions, otherwise as much of A4 as the picture covers. With a paper
// the page is exactly that, turned like the picture; a picture whose proportions differ by more
// than kMaximumStretch lies whole in its middle.
SizedPage sizePage(cv::Size pixels, const SizeClues& clues);

// The larger of the two scales by which pixels are stretched over a paper, to the smaller.
inline constexpr double kMaximumStretch = 1.02;

// None for a density that says nothing: 72 and 96 dpi, which programs write that know of no size,
// and what is no page's.
std::optional<Millimetres> credibleSize(cv::Size pixels, const std::optional<Density>& density);

} // namespace doccam::host
