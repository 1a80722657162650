#include "scene/sheet_change.h"

#include <algorithm>

namespace doccam::virtualcam {

namespace {

// Few positions on the way, as each is a picture to draw.
constexpr int kPlacesEachWay = 3;
constexpr double kWayOut = 1.5;       // of the picture's width
constexpr double kLargestAway = 10.0; // from there no part of the sheet is visible
constexpr const char* kDigits = "0123456789";
constexpr std::size_t kMaximumDigits = 9;

// Consecutive sheets lie differently.
void putDown(SceneSettings& scene, int sheet) {
    scene.sheet += sheet;
    scene.angle += (sheet * 3 + 3) % 7 - 3;
    scene.centreX += 0.01 * (sheet % 3);
}

} // namespace

SceneSettings sceneAt(const SceneSettings& scene, std::uint32_t number) {
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
        return shown;
    }
    // Out, an empty desk, and in, each for the same number of positions.
    constexpr int kPlaces = 3 * kPlacesEachWay;
    const auto place = static_cast<int>((phase - sheetFrames) * kPlaces / changeFrames);
    const bool leaving = place < kPlacesEachWay;
    const bool arriving = place >= 2 * kPlacesEachWay;
    putDown(shown, arriving ? sheet + 1 : sheet);
    if (leaving) {
        shown.centreX += kWayOut * (place + 1) / (kPlacesEachWay + 1);
    } else if (arriving) {
        shown.centreX -= kWayOut * (kPlaces - place) / (kPlacesEachWay + 1);
    } else {
        shown.centreX = kLargestAway;
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
