// A quadrilateral that may be a sheet.
#pragma once

#include "page/search/lines.h"
#include "page/sheet.h"

#include <array>
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
    bool cut = false; // a side is a border of the picture
};

// How well edges of this kind may be sides, 0 to 1. Those that go on past an end are of a pattern,
// of the desk, or of the rest of the sheet.
double asSides(double along, double oneSided, double beyond);
double asSides(const Support& support);

// The candidate with these sides, one after the other around it, either way. Without support if no
// sheet looks like that, or if it has more borders.
Candidate candidateOf(const std::array<const SupportedLine*, 4>& around, cv::Size picture,
                      int maximumBorders);

// Those worth a closer look first, clockwise, without those that are nearly the same as a better
// one.
std::vector<Candidate> mostPromising(std::vector<Candidate> candidates, std::size_t maximum);

} // namespace doccam::page
