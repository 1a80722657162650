#include "scene/sheet_change.h"

#include "scene/unrest.h"

#include <algorithm>

namespace doccam::virtualcam {

namespace {

// Few positions on the way, as each is a picture to draw.
constexpr int kPlacesEachWay = 3;
constexpr double kWayOut = 1.5;       // of the picture's width
constexpr double kNudgeFrames = 4;    // that a push takes
constexpr double kNudgeTurn = 0.2;    // degrees per millimetre
constexpr double kA4Height = 297;     // millimetres
constexpr double kLargestAway = 10.0; // from there no part of the sheet is visible
constexpr const char* kDigits = "0123456789";
constexpr std::size_t kMaximumDigits = 9;

// Consecutive sheets lie differently.
void putDown(SceneSettings& scene, int sheet) {
    scene.sheet += sheet;
    scene.angle += (sheet * 3 + 3) % 7 - 3;
    scene.centreX += 0.01 * (sheet % 3);
}

// Half-way through its rest the sheet is pushed a little, down and askew.
void nudge(SceneSettings& scene, std::uint32_t phase) {
    const double since = static_cast<double>(phase) - scene.sheetFrames / 2.0;
    const double way = scene.unrest.nudge * std::clamp(since / kNudgeFrames, 0.0, 1.0);
    scene.centreY += way * scene.sheetHeight / kA4Height;
    scene.angle += way * kNudgeTurn;
}

SceneSettings laidAt(const SceneSettings& scene, std::uint32_t number) {
    if (scene.sheetFrames <= 0) {
        return scene;
    }
    const auto sheetFrames = static_cast<std::uint32_t>(scene.sheetFrames);
    const auto changeFrames = static_cast<std::uint32_t>(std::max(scene.changeFrames, 0));
    const std::uint32_t cycle = sheetFrames + changeFrames;
    const auto sheet = static_cast<int>(number / cycle);
    const std::uint32_t phase = number % cycle;
    SceneSettings shown = scene;
    if (phase < sheetFrames) {
        putDown(shown, sheet);
        nudge(shown, phase);
        return shown;
    }
    // Out, an empty desk, and in, each for the same number of positions.
    const int placesEachWay = scene.unrest.feeder ? (scene.changeFrames + 2) / 3 : kPlacesEachWay;
    const int places = 3 * placesEachWay;
    const auto place =
        static_cast<int>((phase - sheetFrames) * static_cast<unsigned>(places) / changeFrames);
    const bool leaving = place < placesEachWay;
    const bool arriving = place >= 2 * placesEachWay;
    putDown(shown, arriving ? sheet + 1 : sheet);
    if (leaving) {
        shown.centreX += kWayOut * (place + 1) / (placesEachWay + 1);
    } else if (arriving) {
        shown.centreX -= kWayOut * (places - place) / (placesEachWay + 1);
    } else {
        shown.centreX = kLargestAway;
    }
    return shown;
}

} // namespace

SceneSettings sceneAt(const SceneSettings& scene, std::uint32_t number) {
    SceneSettings shown = laidAt(scene, number);
    if (changesEachFrame(scene)) {
        shown.frame = number;
    }
    return shown;
}

std::string countedUp(const std::string& text, int steps) {
    const auto first = text.find_first_of(kDigits);
    const auto end = std::min(text.find_first_not_of(kDigits, first), text.size());
    if (steps == 0 || first == std::string::npos || end - first > kMaximumDigits) {
        return text;
    }
    std::string digits = std::to_string(std::stoll(text.substr(first, end - first)) + steps);
    if (digits.size() < end - first) {
        digits.insert(0, end - first - digits.size(), '0');
    }
    return text.substr(0, first) + digits + text.substr(end);
}

} // namespace doccam::virtualcam
