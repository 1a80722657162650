#include "hard_frame.h"

#include "scene/frames/desk_scene.h"
#include "scene/frames/placing.h"
#include "scene/pages/contents.h"
#include "scene/pages/sheets.h"

namespace doccam::pictures {
namespace {

using namespace doccam::virtualcam;

constexpr std::uint64_t kSeed = 4;

DeskScene onCloth(const PrintedPage& page) {
    LaidSheet sheet;
    sheet.print = page.picture;
    sheet.millimetres = page.millimetres;
    sheet.rotation = 8;
    sheet.centre = {0, 8};
    DeskScene scene;
    scene.desk = Desk::kCloth;
    scene.sheets = {sheet};
    scene.view = {.focal = 1.0, .tilt = 21, .tiltDirection = 65, .distance = 460};
    scene.light.exposure = 0.85;
    scene.light.gradient = 1.9;
    scene.light.gradientDirection = 20;
    scene.light.tint = {0.86, 1, 1.08};
    scene.seed = kSeed;
    return scene;
}

} // namespace

cv::Mat hardFrame() {
    cv::RNG random(kSeed);
    DeskScene scene = onCloth(printPictures(random));
    scene.light.shadows.push_back({spreadHand({1500, 1500}, 195, 130, random), 20, 0.5});
    return takePicture(scene, kFullSize);
}

cv::Mat frameBeyondLimits() {
    cv::RNG random(kSeed);
    DeskScene scene = onCloth(printLetter({210, 297}, random));
    scene.sheets.front().centre = {20, 60};
    scene.light.glares.push_back({{0.62, 0.55}, {0.05, 0.03}, 30, 0.9});
    return takePicture(scene, kFullSize);
}

} // namespace doccam::pictures
