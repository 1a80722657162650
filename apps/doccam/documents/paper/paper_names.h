// Paper sizes by name, and in millimetres.
#pragma once

#include "documents/paper/page_size.h"

#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

inline constexpr double kShortestSide = 10; // millimetres
inline constexpr double kLongestSide = 2000;
inline constexpr double kLowestDpi = 20;
inline constexpr double kHighestDpi = 2400;

struct NamedPaper {
    const char* name;
    Millimetres size; // upright, but for id1, the card
};

const std::vector<NamedPaper>& namedPapers();

// A name in upper or lower case, or WIDTHxHEIGHT in millimetres, which may have decimals; none for
// any other text and for a side out of range.
std::optional<Millimetres> parsePaper(const std::string& text);

// Its name whichever way it is turned, or "148x105".
std::string paperText(Millimetres paper);

// None for what is no number from kLowestDpi to kHighestDpi.
std::optional<double> parseDpi(const std::string& text);

// Turned so that its longer side lies like that of a picture with these proportions, width to
// height.
Millimetres turnedLike(double proportions, Millimetres paper);

} // namespace doccam::host
