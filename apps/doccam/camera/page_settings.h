// How a still becomes a page.
#pragma once

namespace doccam::host {

enum class Colour { kColour = 0, kGrey = 1, kBlackAndWhite = 2 }; // the values of SetColorMode

struct PageSettings {
    int quarterTurns = 0; // clockwise
    bool crop = false;    // to the sheet, upright
    Colour colour = Colour::kColour;
    bool cleanEdges = false;
    bool cleanBackground = false;
    int quality = 85; // of a JPEG, 0 to 100
};

// Hands all but the cropping to the library; from the next frame on.
void apply(const PageSettings& settings);

} // namespace doccam::host
