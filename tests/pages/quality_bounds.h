// Summaries of measured frames, and the bounds that they must keep.
#pragma once

#include "measures.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace doccam::test {

// Without frames that have it, a measure is none.
struct Summary {
    std::optional<double> meanOverlap;
    std::optional<double> leastOverlap;
    std::optional<double> proportions; // the largest relative error
    int extra = 0;
    std::array<std::optional<double>, 3> words; // mean of the pages, in the order of DoccamColour
    std::array<std::optional<double>, 3> wrong; // mean of the pages
    std::optional<double> fills;                // the largest delta E 2000
    std::optional<double> pictures;             // the largest loss of structural similarity
};

Summary summaryOf(const std::vector<FrameMeasures>& frames);

// A sentence for each bound that does not hold: those that each frame must keep, and those of the
// means of the named frames.
std::vector<std::string> frameFailures(const std::string& name,
                                       const std::vector<FrameMeasures>& frames);
std::vector<std::string> meanFailures(const std::string& name,
                                      const std::vector<FrameMeasures>& frames);

// Of all drawn frames together, and of photographs (name and overlap).
std::vector<std::string> overallFailures(const std::vector<FrameMeasures>& frames);
std::vector<std::string>
photographFailures(const std::vector<std::pair<std::string, double>>& photographs);

} // namespace doccam::test
