// Lines through points along a side, most of which lie on its edge.
#pragma once

#include <vector>

namespace doccam::page {

struct SidePoint {
    double at;     // along the side, 0 to 1
    double offset; // inwards, in pixels
    double weight;
};

struct OffsetLine {
    double start = 0;
    double slope = 0;

    double at(double place) const { return start + slope * place; }
};

// A line that most points, within tolerance, lie on, whatever the others do. At least two points.
OffsetLine lineOfMost(const std::vector<SidePoint>& points, double tolerance);

} // namespace doccam::page
