// Settings for turning a still into a page.
#pragma once

#include <array>

namespace doccam::host {

enum class Colour { kColour = 0, kGrey = 1, kBlackAndWhite = 2 }; // the values of SetColorMode

// Indexed by Colour.
inline constexpr std::array<const char*, 3> kColourNames{"colour", "grey", "bw"};

struct PageSettings {
    int quarterTurns = 0; // clockwise
    bool crop = false;    // crop to the sheet and straighten it
    Colour colour = Colour::kColour;
    bool cleanEdges = false;
    bool cleanBackground = false;
    int quality = 85; // of a JPEG, 0 to 100
};

// Passes all but the cropping to the library, effective from the next frame.
void apply(const PageSettings& settings);

// Switches cropping stills to the sheet and the live outline on or off, from the next frame.
void cropToSheet(bool crop);

} // namespace doccam::host
