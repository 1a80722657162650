// The colour formula of packed YUYV.
#pragma once

namespace doccam {

struct Rgb {
    unsigned char red, green, blue;
};

// One pixel's colour. Values above 250 come out as 255, those below 0 as 0, all others cut off to
// whole numbers.
Rgb yuvToRgb(unsigned char y, unsigned char u, unsigned char v);

} // namespace doccam
