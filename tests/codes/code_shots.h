// Pictures that a camera takes of sheets with codes.
#pragma once

#include "code_kinds.h"

#include <opencv2/core.hpp>

#include <vector>

namespace doccam::test {

enum class Surface { kFlat, kCan, kCrumpled };

struct Shot {
    cv::Size frame{960, 720};
    double module = 4;     // maximum pixels of a module; less where the codes would not fit
    double angle = 0;      // degrees, clockwise
    double codeTurn = 0;   // degrees, of each code by itself at most
    double tilt = 0;       // degrees between the optical axis and the sheet's normal
    double blur = 0.1;     // standard deviation in modules
    double motion = 0;     // modules by which the camera moves during the exposure
    double gradient = 1;   // brightest to darkest place, in light
    double noise = 0.008;  // deviation at full scale, of full scale
    double glare = 0;      // a lamp's reflection on the codes, 1 as bright as white
    int quality = 92;      // of the JPEG
    bool text = false;     // around the codes, on grainy paper
    bool inverted = false; // white on black
    bool onDesk = false;   // the sheet lies on a desk, under a hand's shadow
    Surface surface = Surface::kFlat;
    double bend = 0; // degrees that the can spans, or modules by which points of the sheet move
};

// In grey, after compression as JPEG.
cv::Mat takeShot(const std::vector<PrintedCode>& codes, const Shot& shot, cv::RNG& random);

} // namespace doccam::test
