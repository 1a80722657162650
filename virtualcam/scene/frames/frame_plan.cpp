#include "scene/frames/frame_plan.h"

#include "scene/frames/drawn_frame.h"
#include "scene/frames/placing.h"
#include "scene/pages/sheets.h"
#include "scene/sheets/shapes.h"

#include <cmath>
#include <functional>
#include <map>
#include <stdexcept>

namespace doccam::virtualcam {

namespace {

const cv::Size2d kA4(210, 297);
const cv::Size2d kA5(148, 210);

using Change = std::function<void(FramePlan&, cv::RNG&)>;

void lay(FramePlan& plan, const std::string& kind, PrintedPage page, cv::RNG& random) {
    LaidSheet sheet;
    sheet.print = page.picture;
    sheet.millimetres = page.millimetres;
    sheet.shadow = random.uniform(0.15, 0.4);
    plan.scene.sheets.push_back(sheet);
    plan.kinds.push_back(kind);
    plan.pages.push_back(std::move(page));
}

void layLetter(FramePlan& plan, cv::RNG& random) {
    lay(plan, "a4", printLetter(kA4, random), random);
}

// The ordinary frame, from which each category differs in its own respect.
FramePlan ordinary(cv::RNG& random) {
    FramePlan plan;
    plan.scene.desk = kDesks[random.uniform(0, 5)];
    plan.fill = random.uniform(0.36, 0.86);
    Light& light = plan.scene.light;
    light.exposure = random.uniform(0.78, 0.95);
    light.gradient = random.uniform(1.0, 1.5);
    light.gradientDirection = random.uniform(0.0, 360.0);
    light.vignetting = random.uniform(0.0, 0.25);
    light.tint = {random.uniform(0.92, 1.02), 1, random.uniform(0.96, 1.06)};
    plan.scene.sensor.defocus = random.uniform(0.25, 0.7);
    plan.scene.sensor.noise = random.uniform(0.004, 0.01);
    plan.jpegQuality = random.uniform(88, 96);
    return plan;
}

Change onDesk(Desk desk) {
    return [desk](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        plan.scene.desk = desk;
    };
}

void addGlares(FramePlan& plan, cv::RNG& random) {
    layLetter(plan, random);
    for (int i = random.uniform(1, 4); i > 0; --i) {
        Glare glare;
        glare.centre = {random.uniform(0.1, 1.25), random.uniform(0.1, 0.9)};
        glare.size = {random.uniform(0.05, 0.22), random.uniform(0.02, 0.08)};
        glare.angle = random.uniform(0.0, 180.0);
        glare.strength = random.uniform(0.25, 0.9);
        plan.scene.light.glares.push_back(glare);
    }
}

void layPad(FramePlan& plan, cv::RNG& random) {
    lay(plan, "ruled-pad", printRuledPad(random), random);
    plan.scene.sheets.back().thickness = random.uniform(1.5, 6.0);
}

void layCard(FramePlan& plan, cv::RNG& random) {
    lay(plan, "card", printCard(random), random);
    roundCorners(plan.scene.sheets.back(), 3.18);
    plan.scene.sheets.back().thickness = 0.76;
}

void layFolded(FramePlan& plan, cv::RNG& random) {
    layLetter(plan, random);
    foldCorner(plan.scene.sheets.back(), random.uniform(0, 4),
               {random.uniform(9.0, 22.0), random.uniform(9.0, 22.0)});
}

void laySeveral(FramePlan& plan, cv::RNG& random) {
    plan.largestTilt = 18;
    lay(plan, "a5", printLetter(kA5, random), random);
    layCard(plan, random);
    if (random.uniform(0, 3) > 0) {
        lay(plan, "receipt", printReceipt(random), random);
    }
    if (random.uniform(0, 2) > 0) {
        lay(plan, "banknote", printBanknote(random), random);
    }
}

void addFindCategories(std::map<std::string, Change>& categories) {
    categories["desk-dark"] = onDesk(Desk::kDark);
    categories["desk-wood"] = onDesk(Desk::kWood);
    categories["desk-grey"] = onDesk(Desk::kGrey);
    categories["desk-white"] = onDesk(Desk::kNearlyWhite);
    categories["desk-cloth"] = onDesk(Desk::kCloth);
    categories["view"] = [](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        plan.leastTilt = 14;
        plan.largestTilt = 25;
    };
    categories["empty"] = [](FramePlan&, cv::RNG&) {};
}

void addLightCategories(std::map<std::string, Change>& categories) {
    categories["gradient"] = [](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        plan.scene.light.gradient = random.uniform(2.0, 3.0);
    };
    categories["hand-shadow"] = layLetter;
    categories["glare"] = addGlares;
    categories["noise"] = [](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        plan.scene.sensor.noise = random.uniform(0.014, 0.026);
        plan.scene.light.exposure = random.uniform(0.5, 0.8);
    };
    categories["blur"] = [](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        plan.scene.sensor.defocus = random.uniform(0.8, 1.2);
    };
    categories["jpeg"] = [](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        plan.jpegQuality = random.uniform(80, 86);
    };
}

void addSheetCategories(std::map<std::string, Change>& categories) {
    categories["a4"] = layLetter;
    categories["a5"] = [](FramePlan& plan, cv::RNG& random) {
        lay(plan, "a5", printLetter(kA5, random), random);
    };
    categories["receipt"] = [](FramePlan& plan, cv::RNG& random) {
        lay(plan, "receipt", printReceipt(random), random);
        plan.fill = random.uniform(0.09, 0.14);
    };
    categories["card"] = [](FramePlan& plan, cv::RNG& random) {
        layCard(plan, random);
        plan.fill = random.uniform(0.08, 0.13);
    };
    categories["banknote"] = [](FramePlan& plan, cv::RNG& random) {
        lay(plan, "banknote", printBanknote(random), random);
        plan.fill = random.uniform(0.33, 0.5);
    };
    categories["ruled-pad"] = layPad;
    categories["folded-corner"] = layFolded;
    categories["finger"] = layLetter;
    categories["cut-side"] = [](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        plan.cut = true;
        plan.fill = random.uniform(0.5, 0.8);
    };
    categories["several"] = laySeveral;
}

const std::map<std::string, Change>& changes() {
    static const std::map<std::string, Change> kChanges = [] {
        std::map<std::string, Change> categories;
        addFindCategories(categories);
        addLightCategories(categories);
        addSheetCategories(categories);
        return categories;
    }();
    return kChanges;
}

// From outside of the sheet towards it.
double directionTo(cv::Point2d tip, const Quad& corners) {
    cv::Point2d middle(0, 0);
    for (const cv::Point2d& corner : corners) {
        middle += corner / 4.0;
    }
    return std::atan2(middle.y - tip.y, middle.x - tip.x) * 180 / CV_PI;
}

void castHand(FramePlan& plan, const Quad& corners, cv::RNG& random) {
    const cv::Point2d tip =
        (corners[0] + corners[2]) / 2.0 + (corners[static_cast<std::size_t>(random.uniform(0, 4))] -
                                           (corners[0] + corners[2]) / 2.0) *
                                              random.uniform(0.1, 0.8);
    const double direction = random.uniform(0.0, 360.0);
    HandShadow shadow;
    shadow.hand = spreadHand(tip, direction, random.uniform(90.0, 150.0), random);
    shadow.blur = random.uniform(0, 2) == 0 ? random.uniform(2.0, 6.0) : random.uniform(30.0, 90.0);
    shadow.strength = random.uniform(0.3, 0.6);
    plan.scene.light.shadows.push_back(shadow);
}

void layFinger(FramePlan& plan, const Quad& corners, cv::RNG& random) {
    static const cv::Scalar kSkins[] = {
        {0.30, 0.42, 0.68}, {0.2, 0.3, 0.54}, {0.1, 0.16, 0.32}, {0.05, 0.08, 0.16}};
    const auto side = static_cast<std::size_t>(random.uniform(0, 4));
    const double part = random.uniform(0.25, 0.75);
    const cv::Point2d edge = corners[side] * (1 - part) + corners[(side + 1) % 4] * part;
    const double scale = std::sqrt(area(corners) / plan.pages.front().millimetres.area()) * 16;
    const double direction = directionTo(edge, corners) + random.uniform(-25.0, 25.0);
    const cv::Point2d way(std::cos(direction * CV_PI / 180), std::sin(direction * CV_PI / 180));
    plan.scene.skin = kSkins[random.uniform(0, 4)];
    plan.scene.hands.push_back(
        pointingHand(edge + way * scale * random.uniform(0.5, 1.0), direction, scale));
}

} // namespace

const std::vector<std::string>& frameCategories() {
    static const std::vector<std::string> kNames = [] {
        std::vector<std::string> names;
        for (const auto& [name, change] : changes()) {
            names.push_back(name);
        }
        return names;
    }();
    return kNames;
}

FramePlan planFrame(const std::string& category, cv::RNG& random) {
    const auto change = changes().find(category);
    if (change == changes().end()) {
        throw std::invalid_argument("no category of frames is named " + category);
    }
    FramePlan plan = ordinary(random);
    change->second(plan, random);
    return plan;
}

void addHands(FramePlan& plan, const std::string& category, cv::RNG& random) {
    if (category != "hand-shadow" && category != "finger") {
        return;
    }
    const Quad corners = cornersInPicture(plan.scene.sheets.front(), plan.scene.view, kFullSize);
    category == "finger" ? layFinger(plan, corners, random) : castHand(plan, corners, random);
}

} // namespace doccam::virtualcam
