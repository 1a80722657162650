// Settings for turning a still into a page.
#pragma once

#include <doccam/doccam.h>

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
inline void apply(const PageSettings& settings) {
    SetRotate(settings.quarterTurns);
    SetColorMode(static_cast<int>(settings.colour));
    SetDelBlackedge(settings.cleanEdges ? 1 : 0);
    SetDelBackColor(settings.cleanBackground ? 1 : 0);
    SetJpgQuality(settings.quality);
}

// Switches cropping stills to the sheet and the live outline on or off, from the next frame.
inline void cropToSheet(bool crop) {
    SetCutType(crop ? 1 : 0);
}

} // namespace doccam::host
