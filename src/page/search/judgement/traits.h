// What tells a sheet of paper from any other quadrilateral.
#pragma once

#include "page/search/candidate.h"
#include "page/search/evidence/evidence.h"

namespace doccam::page {

// Each 0 to 1; of the sides that are not a border of the picture.
struct Traits {
    double support = 0; // how much of its sides lies on edges
    double leastSupport = 0;
    double beyond = 0;           // how far edges go on past its corners
    double cornerSupport = 0;    // how much of its sides does so beside the corners
    double leastConsistency = 0; // how much of the worst side shows the contrast
    double contrast = 0;         // in levels, 0.5 for 15
    double leastContrast = 0;    // of the faintest side, 0.5 for 3
    double deepContrast = 0;     // how much of it is there farther away
    double evenness = 0;         // along the inside of the sides
    double brighter = 0;         // the part of the sides that are brighter inside
    double sameness = 0;         // of the inside of all sides
    double sameTint = 0;         // the same without lightness
    double background = 0;       // sameness of the outside of all sides
    double surroundings = 0;     // the same farther around, where a pattern evens out
    double smoothInside = 0;
    double smoothOutside = 0;
    double calm = 0;       // how much smoother the inside is, as paper is beside cloth
    double continuing = 0; // how much of the contrast goes on past its corners
    double leak = 0;       // how much of the surroundings looks as the inside
    double worstLeak = 0;  // of one side
    double hole = 0;       // how much of the inside looks as the surroundings
    double rectangle = 0;  // whether a rectangle may look like that
    double size = 0;       // its side, of the picture's
    double whole = 0;      // 0 if one side is a border of the picture
};

// All 0 if too little of its sides is seen, or if they cross.
Traits traitsOf(const Candidate& candidate, const Evidence& evidence);

} // namespace doccam::page
