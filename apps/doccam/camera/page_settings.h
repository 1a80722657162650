// How a still becomes a page.
#pragma once

#include <array>

namespace doccam::host {

enum class Colour { kColour = 0, kGrey = 1, kBlackAndWhite = 2 }; // the values of SetColorMode

// In the order of the values.
inline constexpr std::array<const char*, 3> kColourNames{"colour", "grey", "bw"};

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

// Crops stills to the sheet and shows its outline live, or neither; from the next frame on.
void cropToSheet(bool crop);

} // namespace doccam::host
