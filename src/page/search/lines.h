// Straight lines that the edges of a reduced picture lie on.
#pragma once

#include "page/line.h"
#include "page/search/evidence/evidence.h"

#include <vector>

namespace doccam::page {

// A line with how much of it lies on edges.
class SupportedLine : public Line {
  public:
    SupportedLine(const Line& line, const Evidence& evidence);

    // A border of the picture, beyond which a cut sheet goes on.
    static SupportedLine border(const Line& line) { return SupportedLine(line); }

    bool isBorder() const { return counts_.empty(); }

    // The part of it between two places along it that lies on edges, 0 to 1: of what the picture
    // shows of it, and 0 if that is less than a third.
    double support(double from, double to) const;

    // The same, of the edges that change to one side less those that change to the other.
    double oneSided(double from, double to) const;

    // The support close by both ends, outside of them.
    double supportBeyond(double from, double to) const;

  private:
    struct Counts { // up to a pixel along the line
        int edges = 0;
        int upwards = 0; // brighter towards the normal
        int downwards = 0;
    };

    struct Span {
        const Counts* first;
        const Counts* last;
    };

    explicit SupportedLine(const Line& line)
      : Line(line) {}

    Span spanOf(double from, double to) const;

    double start_ = 0; // where the line enters the picture
    std::vector<Counts> counts_;
};

std::vector<SupportedLine> bordersOf(cv::Size picture);

// The lines with most edges, then the picture's borders.
std::vector<SupportedLine> linesIn(const Evidence& evidence);

} // namespace doccam::page
