// The drawn scene: the sheet's position and content, the desk, the camera's view and the light.
#pragma once

#include <cstdint>
#include <string>

namespace doccam::virtualcam {

// How the camera looks at the desk. An upright camera sees no perspective.
struct SceneView {
    double focal = 1.2;        // focal length, of the picture's width; matters where tilt is not 0
    double tilt = 0;           // degrees from upright, 0 to 25
    double tiltDirection = 90; // degrees, where the camera stands, clockwise from the right
    double blur = 0;           // deviation, in pixels

    bool operator==(const SceneView&) const = default;
};

struct SceneLight {
    double gradient = 1;          // brightest to darkest place, 1 to 10
    double gradientDirection = 0; // degrees, towards the darkest place, clockwise from the right
    double vignetting = 0;        // of the light that the corners lose
    double handShadow = 0;        // of the light that a hand takes from the sheet
    double glare = 0;             // a lamp's reflection on the sheet, 1 as bright as white

    bool operator==(const SceneLight&) const = default;
};

// What keeps the picture from coming to rest while a sheet lies still.
struct SceneUnrest {
    double bands = 0;       // of the light that flickering lamps take, in bands across the picture
    double bandCount = 3;   // bands in the picture
    double bandDrift = 0.3; // bands by which they move from frame to frame
    double flicker = 0;     // of the light by which the whole picture goes up and down
    double flickerFrames = 7;  // frames from bright to bright
    std::string hand = "none"; // stays: at the sheet's edge; visits: comes and goes
    double tremble = 1;        // millimetres, of the hand
    double nudge = 0;          // millimetres by which a sheet is pushed half-way through its rest
    bool feeder = false;       // sheets are pushed through slowly instead of being laid down
    bool form = false;         // sheets differ in a single line of 10-point print

    bool operator==(const SceneUnrest&) const = default;
};

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
    int repeatFrames = 0;  // frames after which the same come again, drawn once; 0: never

    std::string desk = "plain"; // or dark, wood, grey, white, cloth
    SceneView view;
    SceneLight light;

    SceneUnrest unrest;
    std::uint32_t frame = 0; // number of the frame, where lamps or hands make each one different

    bool operator==(const SceneSettings&) const = default;
};

} // namespace doccam::virtualcam
