#include "scene/frames/frame_plan.h"

#include "scene/frames/drawn_frame.h"
#include "scene/frames/placing.h"
#include "scene/pages/contents.h"
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
    for (int i = random.uniform(1, 4); i > 0; --i) {
        Glare glare;
        glare.centre = {random.uniform(0.1, 1.25), random.uniform(0.1, 0.9)};
        glare.size = {random.uniform(0.05, 0.22), random.uniform(0.02, 0.08)};
        glare.angle = random.uniform(0.0, 180.0);
        glare.strength = random.uniform(0.25, 0.9);
        plan.scene.light.glares.push_back(glare);
    }
}

// Shadows and reflections, which have outlines too, fall on some.
Change emptyDesk(Desk desk) {
    return [desk](FramePlan& plan, cv::RNG& random) {
        plan.scene.desk = desk;
        plan.handShadow = random.uniform(0, 3) == 0;
        if (random.uniform(0, 4) == 0) {
            addGlares(plan, random);
        }
    };
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
    categories["empty-dark"] = emptyDesk(Desk::kDark);
    categories["empty-wood"] = emptyDesk(Desk::kWood);
    categories["empty-grey"] = emptyDesk(Desk::kGrey);
    categories["empty-white"] = emptyDesk(Desk::kNearlyWhite);
    categories["empty-cloth"] = emptyDesk(Desk::kCloth);
}

void addLightCategories(std::map<std::string, Change>& categories) {
    categories["gradient"] = [](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        plan.scene.light.gradient = random.uniform(2.0, 3.0);
    };
    categories["hand-shadow"] = [](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        plan.handShadow = true;
    };
    categories["glare"] = [](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        addGlares(plan, random);
    };
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
    categories["finger"] = [](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        plan.finger = true;
    };
    categories["cut-side"] = [](FramePlan& plan, cv::RNG& random) {
        layLetter(plan, random);
        plan.cut = true;
        plan.fill = random.uniform(0.5, 0.8);
    };
    categories["several"] = laySeveral;
}

Change printed(PrintedPage (*print)(cv::RNG&)) {
    return [print](FramePlan& plan, cv::RNG& random) {
        lay(plan, "a4", print(random), random);
        plan.fill = random.uniform(0.62, 0.86);
    };
}

void addPageCategories(std::map<std::string, Change>& categories) {
    categories["small"] = [](FramePlan& plan, cv::RNG& random) {
        printed(printSmallPrint)(plan, random);
        plan.fill = random.uniform(0.76, 0.86);
    };
    categories["pale"] = printed(printPalePrint);
    categories["coloured"] = printed(printColouredPrint);
    categories["reversed"] = printed(printReversedPrint);
    categories["pictures"] = printed(printPictures);
    categories["fills"] = printed(printFills);
    categories["highlighter"] = printed(printHighlighter);
    categories["tables"] = printed(printTables);
}

// Any page in two difficulties at once.
void layMixed(FramePlan& plan, cv::RNG& random) {
    const auto pages = {printPalePrint, printColouredPrint, printReversedPrint, printPictures,
                        printFills,     printHighlighter,   printTables};
    lay(plan, "a4", pages.begin()[random.uniform(0, static_cast<int>(pages.size()))](random),
        random);
    plan.leastTilt = 8;
    plan.largestTilt = 25;
    plan.fill = random.uniform(0.5, 0.86);
    plan.cut = random.uniform(0, 3) == 0;
    plan.finger = !plan.cut && random.uniform(0, 3) == 0;
    plan.handShadow = random.uniform(0, 2) == 0;
    if (random.uniform(0, 2) == 0) {
        addGlares(plan, random);
    }
}

const std::map<std::string, Change>& changes() {
    static const std::map<std::string, Change> kChanges = [] {
        std::map<std::string, Change> categories;
        addFindCategories(categories);
        addLightCategories(categories);
        addSheetCategories(categories);
        addPageCategories(categories);
        categories["mixed"] = layMixed;
        return categories;
    }();
    return kChanges;
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

} // namespace doccam::virtualcam
