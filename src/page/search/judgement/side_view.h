// The colours on both sides of a straight side.
#pragma once

#include "page/search/evidence/evidence.h"

#include <optional>

namespace doccam::page {

struct SideView {
    cv::Vec3f inside; // the usual colours a few pixels away, as in Evidence
    cv::Vec3f outside;
    cv::Vec3f surroundings;  // the mean colour farther around
    double contrast = 0;     // levels between inside and outside
    double brighter = 0;     // levels that the inside is brighter
    double consistency = 0;  // part of the side that shows the contrast
    double deepContrast = 0; // of it, the part that farther away is still there
    double evenness = 0;     // 1 if the inside is of one colour
    double roughInside = 0;  // part of the steps along the side that change the colour
    double roughOutside = 0;
    double calm = 0;       // 1 if it is rough outside only, as cloth is beside paper
    double continuing = 0; // how much of the contrast is still there past its ends
    double leak = 0;       // part of the surroundings that looks as inside
    double hole = 0;       // part of the inside that looks as outside
};

// Of the side between two corners of the reduced picture, in clockwise order; none where the
// picture shows too little of it.
std::optional<SideView> viewOf(const Evidence& evidence, cv::Point2d from, cv::Point2d to);

} // namespace doccam::page
