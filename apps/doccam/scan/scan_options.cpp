#include "scan/scan_options.h"

#include "host/failure.h"
#include "pictures/pdf_name.h"

#include <filesystem>

namespace doccam::host {
namespace {

// The first option of the library's stills; empty if none is given.
std::string stillStep(const ScanOptions& options) {
    if (options.crop == Crop::kRectangle) {
        return "--crop=rectangle";
    }
    if (options.page.cleanEdges) {
        return "--clean-edges";
    }
    return options.page.cleanBackground ? "--clean-background" : "";
}

void refuseTogether(bool both, const std::string& one, const std::string& other) {
    if (both) {
        throw Failure(kUsage,
                      one + " and " + other + " do not go together; leave out one of them.");
    }
}

} // namespace

bool ScanOptions::byEngine() const {
    return stillStep(*this).empty() && (!plan.whole || look);
}

PageWay ScanOptions::way() const {
    return {.byEngine = byEngine(),
            .whole = plan.whole,
            .recipe = {.turn = page.quarterTurns,
                       .look = look.value_or(Look::kPaper),
                       .colour = page.colour,
                       .quality = page.quality}};
}

DocumentPlan ScanOptions::documentPlan() const {
    return {.target =
                target.empty() || targetPasses ? "" : std::filesystem::absolute(target).string(),
            .wholeFrame = plan.whole,
            .recipe = way().recipe,
            .stills = byEngine() ? std::nullopt
                                 : std::optional(StillCleaning{.edges = page.cleanEdges,
                                                               .background = page.cleanBackground}),
            .paper = paper,
            .document = document};
}

void ScanOptions::prefer(const ScanOptions& said) {
    if (resume) {
        page = said.page;
        noSpool = said.noSpool;
    }
    if (resume || said.look) {
        page.cleanEdges = said.page.cleanEdges;
        page.cleanBackground = said.page.cleanBackground;
    }
    if (resume || said.look || said.plan.whole) {
        crop = said.crop;
    }
    if (resume || !stillStep(said).empty()) {
        look = said.look;
    }
    if (resume || said.crop != Crop::kNone) {
        plan.whole = said.plan.whole;
    }
}

void ScanOptions::adopt(const DocumentPlan& known) {
    const auto keep = [this](const char* name, auto& value, const auto& before) {
        if (!given.contains(name)) {
            value = before;
        }
    };
    adoptMaker(known);
    host::adopt(document, known.document, given);
    paper = paper == PaperOptions() ? known.paper : paper;
    keep("--rotate", page.quarterTurns, known.recipe.turn);
    keep("--colour", page.colour, known.recipe.colour);
    keep("--quality", page.quality, known.recipe.quality);
}

// An option of the page engine, or of stills, leaves the other.
void ScanOptions::adoptMaker(const DocumentPlan& known) {
    const bool asksForStills = !stillStep(*this).empty();
    const bool choosesFrame = crop != Crop::kNone || plan.whole;
    if (known.stills && !look) {
        page.cleanEdges |= known.stills->edges;
        page.cleanBackground |= known.stills->background;
        if (!choosesFrame && !known.wholeFrame) {
            crop = Crop::kRectangle;
        }
    } else if (!known.stills && !asksForStills && !look) {
        look = known.recipe.look;
    }
    if (!choosesFrame) {
        plan.whole = known.wholeFrame;
    }
}

void refuseContradictions(const ScanOptions& options) {
    const std::string still = stillStep(options);
    refuseTogether(options.look && !still.empty(), "--look", still);
    refuseTogether(options.plan.whole && options.crop != Crop::kNone, "--whole-frame", "--crop");
    refuseTogether(options.resume && options.noSpool, "--resume", "--no-spool");
    if (!options.target.empty() && !isPdfName(options.target)) {
        throw Failure(kUsage, "The name " + options.target + " is no PDF's; let it end in .pdf.");
    }
}

} // namespace doccam::host
