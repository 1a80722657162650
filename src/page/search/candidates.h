// Quadrilaterals that lines form.
#pragma once

#include "page/search/lines.h"
#include "page/sheet.h"

#include <vector>

namespace doccam::page {

// How its sides that are not a border of the picture lie on edges, each 0 to 1.
struct Support {
    double mean = 0;     // of all sides
    double least = 0;    // of the worst side
    double oneSided = 0; // of the edges that change in the same direction all along a side
    double beyond = 0;   // past the corners, where those of a pattern or of the desk go on
    double corners = 0;  // beside the corners
};

struct Candidate {
    Corners corners; // in the reduced picture, clockwise
    Support support;
    bool cut = false; // one side is a border of the picture
};

// The best supported quadrilaterals that a sheet may have in perspective, the best first.
std::vector<Candidate> candidatesOf(const std::vector<SupportedLine>& lines, cv::Size picture,
                                    std::size_t maximum);

// The candidate with these corners, clockwise, whose sides are no borders.
Candidate candidateAt(const Corners& corners, const Evidence& evidence);

} // namespace doccam::page
