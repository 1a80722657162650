#include "scene/frames/drawn_frame.h"

#include "scene/frames/frame_plan.h"
#include "scene/frames/placing.h"

namespace doccam::virtualcam {

namespace {

const char* deskName(Desk desk) {
    static const char* const kNames[] = {"dark", "wood", "grey", "white", "cloth"};
    return kNames[static_cast<int>(desk)];
}

std::uint64_t mixed(const std::string& category, std::uint64_t seed) {
    std::uint64_t hash = 14695981039346656037ULL + seed * 0x9e3779b97f4a7c15ULL;
    for (const char letter : category) {
        hash = (hash ^ static_cast<unsigned char>(letter)) * 1099511628211ULL;
    }
    return hash;
}

void place(FramePlan& plan, cv::RNG& random) {
    DeskScene& scene = plan.scene;
    scene.view = randomView(plan.leastTilt, plan.largestTilt, random);
    if (scene.sheets.size() > 1) {
        placeBesideEachOther(scene.sheets, scene.view, random.uniform(390.0, 470.0), random);
    } else if (plan.cut) {
        placeCut(scene.sheets.front(), scene.view, plan.fill, random);
    } else if (!scene.sheets.empty()) {
        placeWhole(scene.sheets.front(), scene.view, plan.fill, random);
    } else {
        scene.view.distance = random.uniform(300.0, 450.0) * scene.view.focal;
    }
}

// Sheets for which there was no place are gone, so the others are recognised by their prints.
std::vector<TrueSheet> truth(const FramePlan& plan) {
    std::vector<TrueSheet> sheets;
    for (const LaidSheet& laid : plan.scene.sheets) {
        for (std::size_t i = 0; i < plan.pages.size(); ++i) {
            if (plan.pages[i].millimetres == laid.millimetres) {
                sheets.push_back({plan.kinds[i], cornersInPicture(laid, plan.scene.view, kFullSize),
                                  plan.cut, plan.pages[i]});
                break;
            }
        }
    }
    return sheets;
}

} // namespace

DrawnFrame drawFrame(const std::string& category, std::uint64_t seed) {
    cv::RNG random(mixed(category, seed));
    FramePlan plan = planFrame(category, random);
    place(plan, random);
    addHands(plan, random);
    plan.scene.seed = random.next();
    DrawnFrame frame;
    frame.category = category;
    frame.desk = deskName(*plan.scene.desk);
    frame.seed = seed;
    frame.picture = takePicture(plan.scene, kFullSize);
    frame.jpegQuality = plan.jpegQuality;
    frame.sheets = truth(plan);
    return frame;
}

} // namespace doccam::virtualcam
