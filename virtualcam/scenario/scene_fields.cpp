#include "scenario/scene_fields.h"

#include "scene/desk_picture.h"
#include "scene/desks/desk.h"

namespace doccam::virtualcam {

namespace {

SceneView readView(const Json& object) {
    refuseUnknownFields(object, {"focal", "tilt", "tiltDirection", "blur"});
    SceneView view;
    readWithin(object, "focal", view.focal, 0.8, 4);
    readWithin(object, "tilt", view.tilt, 0, 25);
    readWithin(object, "tiltDirection", view.tiltDirection, -360, 360);
    readWithin(object, "blur", view.blur, 0, 20);
    return view;
}

SceneLight readLight(const Json& object) {
    refuseUnknownFields(object,
                        {"gradient", "gradientDirection", "vignetting", "handShadow", "glare"});
    SceneLight light;
    readWithin(object, "gradient", light.gradient, 1, 10);
    readWithin(object, "gradientDirection", light.gradientDirection, -360, 360);
    readWithin(object, "vignetting", light.vignetting, 0, 1);
    readWithin(object, "handShadow", light.handShadow, 0, 1);
    readWithin(object, "glare", light.glare, 0, 4);
    return light;
}

SceneUnrest readUnrest(const Json& object) {
    refuseUnknownFields(object, {"bands", "bandCount", "bandDrift", "flicker", "flickerFrames",
                                 "hand", "tremble", "nudge", "feeder", "form"});
    SceneUnrest unrest;
    readWithin(object, "bands", unrest.bands, 0, 1);
    readWithin(object, "bandCount", unrest.bandCount, 0, 1000);
    readWithin(object, "bandDrift", unrest.bandDrift, -1000, 1000);
    readWithin(object, "flicker", unrest.flicker, 0, 1);
    readWithin(object, "flickerFrames", unrest.flickerFrames, 1, 1e6);
    readWithin(object, "tremble", unrest.tremble, 0, 100);
    readWithin(object, "nudge", unrest.nudge, -100, 100);
    read(object, "hand", unrest.hand);
    read(object, "feeder", unrest.feeder);
    read(object, "form", unrest.form);
    if (unrest.hand != "none" && unrest.hand != "stays" && unrest.hand != "visits") {
        throw std::runtime_error("unknown hand \"" + unrest.hand + "\"");
    }
    return unrest;
}

void readDesk(const Json& object, SceneSettings& scene) {
    read(object, "desk", scene.desk);
    if (scene.desk != "plain" && !deskNamed(scene.desk)) {
        throw std::runtime_error("unknown desk \"" + scene.desk + "\"");
    }
    if (object.contains("view")) {
        scene.view = readView(object.at("view"));
    }
    if (object.contains("light")) {
        scene.light = readLight(object.at("light"));
    }
    // Only the default picture has room for sheets of any size.
    if (!isPlain(scene)) {
        readWithin(object, "sheetHeight", scene.sheetHeight, 0.05, 10);
    }
}

} // namespace

SceneSettings readScene(const Json& object) {
    refuseUnknownFields(object, {"angle", "sheetHeight", "centreX", "centreY", "noise", "qrText",
                                 "code128Text", "sheet", "sheetFrames", "changeFrames",
                                 "repeatFrames", "desk", "view", "light", "unrest"});
    SceneSettings scene;
    read(object, "angle", scene.angle);
    read(object, "sheetHeight", scene.sheetHeight);
    read(object, "centreX", scene.centreX);
    read(object, "centreY", scene.centreY);
    read(object, "noise", scene.noise);
    read(object, "qrText", scene.qrText);
    read(object, "code128Text", scene.code128Text);
    read(object, "sheet", scene.sheet);
    read(object, "sheetFrames", scene.sheetFrames);
    read(object, "changeFrames", scene.changeFrames);
    read(object, "repeatFrames", scene.repeatFrames);
    if (scene.sheet < 0 || scene.sheetFrames < 0 || scene.changeFrames < 0 ||
        scene.repeatFrames < 0) {
        throw std::runtime_error("sheets and frames are counted from 0");
    }
    if (object.contains("unrest")) {
        scene.unrest = readUnrest(object.at("unrest"));
    }
    readDesk(object, scene);
    return scene;
}

} // namespace doccam::virtualcam
