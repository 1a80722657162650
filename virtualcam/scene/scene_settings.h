// Where the sheet lies in the drawn scene and what is printed on it.
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
    int sheet = 0;         // which of the numbered sheets: numbers on it are counted up by this
    int sheetFrames = 0;   // frames for which a sheet lies still before the next one; 0: for ever
    int changeFrames = 24; // frames in which one sheet is taken away and the next one put down

    bool operator==(const SceneSettings&) const = default;
};

} // namespace doccam::virtualcam
