// The sheet's position in the drawn scene and its content.
#pragma once

#include <string>

namespace doccam::virtualcam {

struct SceneSettings {
    double angle = 4.0;       // degrees, clockwise as seen
    double sheetHeight = 0.8; // of the picture's height
    double centreX = 0.5;     // of the picture's width
    double centreY = 0.5;     // of the picture's height
    double noise = 1.5;       // standard deviation of a sample, in grey levels; 0 for none
    std::string qrText = "https://example.org/sheet/0042";
    std::string code128Text = "DOC-0042-2026";
    int sheet = 0;         // number of the sheet: its texts' numbers are incremented by this
    int sheetFrames = 0;   // frames that a sheet lies still before the next; 0: for ever
    int changeFrames = 24; // frames from one sheet to the next

    bool operator==(const SceneSettings&) const = default;
};

} // namespace doccam::virtualcam
