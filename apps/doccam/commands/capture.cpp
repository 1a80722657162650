// doccam capture: stills, one file each.
#include "commands/commands.h"
#include "commands/options.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "pages/rendering.h"
#include "pages/sheet_json.h"
#include "pictures/pdf_file.h"
#include "pictures/writing.h"
#include "pictures/written_file.h"
#include "scan/page_source.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

struct CaptureOptions {
    StillOptions still;
    Crop crop = Crop::kNone;
    bool usualCrop = false; // --crop alone
    std::optional<Look> look;
    std::vector<std::string> files;
    bool force = false;

    bool byEngine() const { return look || crop == Crop::kSheet; }

    PageWay way() const {
        return {.whole = crop != Crop::kSheet,
                .recipe = {.turn = still.page.quarterTurns,
                           .look = look.value_or(Look::kPaper),
                           .colour = still.page.colour,
                           .quality = still.page.quality}};
    }
};

void refuseContradictions(const CaptureOptions& options) {
    const PageSettings& page = options.still.page;
    if (options.byEngine() &&
        (options.crop == Crop::kRectangle || page.cleanEdges || page.cleanBackground)) {
        throw Failure(kUsage, "--look and --crop=sheet do not go together with --crop=rectangle, "
                              "--clean-edges and --clean-background; leave out some of them.");
    }
    for (const std::string& file : options.files) {
        const bool takesBits = isPdfName(file) || std::filesystem::path(file).extension() == ".png";
        if (options.byEngine() && page.colour == Colour::kBlackAndWhite && !takesBits) {
            throw Failure(kUsage, "Pages in black and white are PNG files or PDFs, and " + file +
                                      " is none; choose another name.");
        }
    }
}

using Targets = std::vector<std::unique_ptr<OutputFile>>;

// Checks all names before the camera is opened.
Targets claim(const CaptureOptions& options) {
    Targets targets;
    std::set<std::filesystem::path> names;
    for (const std::string& file : options.files) {
        refuseUnknownType(file);
        targets.push_back(std::make_unique<OutputFile>(file, options.force));
        if (!names.insert(std::filesystem::weakly_canonical(std::filesystem::absolute(file)))
                 .second) {
            throw Failure(kUsage, "The file " + file +
                                      " is named twice; give each still a name "
                                      "of its own.");
        }
    }
    return targets;
}

[[noreturn]] void failWithoutSheet(const OutputFile& target) {
    throw Failure(kNothingFound, "No sheet was found for " + target.target().string() +
                                     "; lay one on a dark desk, or leave out --crop.");
}

void takeStill(const Context& context, CameraSession& session, OutputFile& target, bool crop) {
    if (crop && !session.findSheet()) {
        failWithoutSheet(target);
    }
    const bool pdf = isPdfName(target.target().string());
    const std::string draft = pdf ? target.part("page.jpg") : target.draft();
    session.still(draft, crop);
    if (pdf) {
        publishPdf(target, {draft}, *context.interrupt);
    } else {
        target.publish(draft);
    }
}

// Made by the page engine of the next frame; returns its sheet, if it is one.
std::optional<FoundSheet> takePage(CameraSession& session, OutputFile& target, const PageWay& way) {
    const PageDraft draft = draftPage(session, way, "");
    if (!way.whole && !draft.sheet) {
        failWithoutSheet(target);
    }
    const Page page = renderPage(decoded(draft.frame), draft.recipe);
    const bool pdf = isPdfName(target.target().string());
    const std::string name = pdf ? "page.jpg" : target.draft();
    const auto bytes = encodePage(name, *page, draft.recipe.quality);
    const std::string path =
        pdf ? target.part("page" + std::string(extensionOf(bytes))) : target.draft();
    writeBytes(target, path, bytes);
    if (pdf) {
        publishPages(target, {path});
    } else {
        target.publish(path);
    }
    return draft.sheet;
}

Json take(const Context& context, CameraSession& session, OutputFile& target,
          const CaptureOptions& options) {
    if (options.byEngine()) {
        return asJson(takePage(session, target, options.way()));
    }
    takeStill(context, session, target, options.crop == Crop::kRectangle);
    return Json::object();
}

int capture(const Context& context, const CaptureOptions& options) {
    refuseContradictions(options);
    Targets targets = claim(options);
    StillOptions still = options.still;
    if (options.byEngine()) {
        still.page = {};
    }
    const auto session = openForStills(context, still);
    Result result(context.options.json, Json::array());
    for (const auto& target : targets) {
        const Json sheet = take(context, *session, *target, options);
        const WrittenFile written = describeFile(target->target().string());
        Json row = asJson(written);
        row.update(sheet);
        result.add(row, asText(written));
    }
    return kDone;
}

} // namespace

void addCaptureCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<CaptureOptions>();
    CLI::App* command = app.add_subcommand("capture", "Take a still for each file named");
    command->add_option("FILE", options->files, "Files to write: jpg, png, tif, bmp or pdf")
        ->required()
        ->type_name("");
    addCaptureOptions(*command, options->still);
    addCropOption(*command, options->crop, Crop::kRectangle,
                  "Cut out the sheet, taken for a rectangle; --crop=sheet also one seen at an "
                  "angle",
                  &options->usualCrop);
    addLookOption(*command, [options](Look look) { options->look = look; });
    addPageOptions(*command, options->still.page);
    command->add_flag("--force", options->force, "Replace files that exist");
    command->footer(
        "Examples:\n"
        "  doccam capture page.jpg\n"
        "  doccam capture --crop --clean-edges --colour bw page.png\n"
        "  doccam capture --crop=sheet --look paper page.jpg\n"
        "  doccam capture --size 1280x960 --rotate 90 --quality 70 first.jpg second.pdf");
    command->callback([&context, options] {
        context.settle = [options] {
            if (options->look && options->usualCrop) {
                options->crop = Crop::kSheet;
            }
        };
        context.run = [&context, options] { return capture(context, *options); };
    });
}

} // namespace doccam::host
