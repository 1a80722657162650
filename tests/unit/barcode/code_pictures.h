// Pictures of codes as a camera might take them.
#pragma once

#include "code_drawing.h"

#include <vector>

namespace doccam::test {

// How the camera sees a page with codes.
struct View {
    cv::Size frame{960, 720};
    double module = 4;     // maximum pixels per module; large codes are drawn to fit
    double angle = 0;      // degrees, counter-clockwise
    double blur = 0;       // standard deviation in modules
    double darkest = 1;    // light in the darkest corner, relative to the brightest
    bool textured = false; // text around the code, grain in the paper
    int seed = 1;
};

// A red-first frame with the first code in its middle and a second one, if any, below.
cv::Mat photograph(const std::vector<Code>& codes, const View& view);

} // namespace doccam::test
