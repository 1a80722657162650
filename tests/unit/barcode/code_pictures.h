// Pictures of codes as a camera might take them.
#pragma once

#include "code_drawing.h"

#include <vector>

namespace doccam::test {

// How a page with codes is seen.
struct View {
    cv::Size frame{960, 720};
    double module = 4;     // pixels a module, at most; large codes are drawn to fit
    double angle = 0;      // degrees, counter-clockwise
    double blur = 0;       // standard deviation in modules
    double darkest = 1;    // light in the darkest corner, 1 for that of the brightest
    bool textured = false; // text around the code, grain in the paper
    int seed = 1;
};

// A red-first frame that shows the first code in its middle. A second one stands below.
cv::Mat photograph(const std::vector<Code>& codes, const View& view);

} // namespace doccam::test
