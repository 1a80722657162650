// doccam capture: stills, one file each.
#include "camera/calibrations.h"
#include "commands/commands.h"
#include "commands/options.h"
#include "commands/paper/paper_options.h"
#include "documents/document_making.h"
#include "documents/paper/density_stamp.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "pages/calibrated_size.h"
#include "pages/rendering.h"
#include "pages/sheet_json.h"
#include "pictures/pdf_name.h"
#include "pictures/writing.h"
#include "pictures/written_file.h"
#include "scan/page_source.h"
#include "stills/still_series.h"
#include "streams/output_stream.h"
#include "streams/picture_inputs.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

constexpr int kMaximumStills = 999999;
constexpr int kLongestDelay = 86400;

struct CaptureOptions {
    StillOptions still;
    Crop crop = Crop::kNone;
    bool usualCrop = false; // --crop alone
    std::optional<Look> look;
    PaperOptions paper;
    std::vector<std::string> files;
    int count = 1;
    double delay = 0;         // seconds
    std::string type = "jpg"; // for standard output
    bool force = false;

    bool byEngine() const { return look || crop == Crop::kSheet; }

    bool toOutput() const { return std::any_of(files.begin(), files.end(), isStandardStream); }

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
    if (!options.byEngine() && !(options.paper == PaperOptions())) {
        throw Failure(kUsage, "--dpi and --paper are for pages; add --look or --crop=sheet.");
    }
    for (const std::string& file : options.files) {
        const bool takesBits = isPdfName(file) || std::filesystem::path(file).extension() == ".png";
        if (options.byEngine() && page.colour == Colour::kBlackAndWhite && !takesBits) {
            throw Failure(kUsage, "Pages in black and white are PNG files or PDFs, and " + file +
                                      " is none; choose another name.");
        }
    }
}

[[noreturn]] void failWithoutSheet(const OutputFile& target) {
    throw Failure(kNothingFound, "No sheet was found for " + target.target().string() +
                                     "; lay one on a dark desk, or leave out --crop.");
}

void takeStill(const Context& context, CameraSession& session, OutputFile& target, bool crop,
               bool isBlackAndWhite) {
    if (crop && !session.findSheet()) {
        failWithoutSheet(target);
    }
    const bool pdf = isPdfName(target.target().string());
    const std::string draft =
        pdf ? target.part(isBlackAndWhite ? "page.png" : "page.jpg") : target.draft();
    session.still(draft, crop);
    if (pdf) {
        publishDocument(target, inputPages(draft), {}, *context.interrupt);
    } else {
        target.publish(draft);
    }
}

// Made by the page engine of the next frame; returns what is known of it.
Json takePage(const Context& context, CameraSession& session, OutputFile& target,
              const PageWay& way, const PaperOptions& paper) {
    const PageDraft draft = draftPage(session, way, "");
    if (!way.whole && !draft.sheet) {
        failWithoutSheet(target);
    }
    const Page page = renderPage(decoded(draft.frame), draft.recipe);
    const bool pdf = isPdfName(target.target().string());
    const std::string name = pdf ? "page.jpg" : target.draft();
    auto bytes = encodePage(name, *page, draft.recipe.quality);
    const cv::Size size(page->width, page->height);
    const SizedPage sized = sizePage(
        size, {.options = paper, .calibrated = calibratedSize(draft.recipe, draft.origin.desk)});
    stampDensity(bytes, size, sized);
    const std::string path =
        pdf ? target.part("page" + std::string(extensionOf(bytes))) : target.draft();
    writeBytes(target, path, bytes);
    if (pdf) {
        publishDocument(target, {madePage(path, sized)}, {}, *context.interrupt);
    } else {
        target.publish(path);
    }
    Json row = asJson(draft.sheet);
    row.update(asJson(sized));
    return row;
}

Json take(const Context& context, CameraSession& session, OutputFile& target,
          const CaptureOptions& options) {
    if (options.byEngine()) {
        PageWay way = options.way();
        way.desks = desksOf(session.camera());
        return takePage(context, session, target, way, options.paper);
    }
    takeStill(context, session, target, options.crop == Crop::kRectangle,
              options.still.page.colour == Colour::kBlackAndWhite);
    return Json::object();
}

int captureFiles(const Context& context, const CaptureOptions& options) {
    refuseContradictions(options);
    StillSeries series(options.files, options.count, options.force);
    StillOptions still = options.still;
    if (options.byEngine()) {
        still.page = {};
    }
    const auto session = openForStills(context, still);
    const auto delay = std::chrono::milliseconds(std::lround(options.delay * 1000));
    Result result(context.options.json, Json::array());
    while (const auto target = series.next()) {
        const Json page = take(context, *session, *target, options);
        const WrittenFile written = describeFile(target->target().string());
        Json row = asJson(written);
        row.update(page);
        result.add(row, asText(written));
        if (!series.atEnd()) {
            session->waitFor(delay);
        }
    }
    return kDone;
}

int captureToOutput(const Context& context, CaptureOptions options) {
    if (options.files.size() > 1 || options.count > 1) {
        throw Failure(kUsage,
                      "Standard output takes one still; leave out other files and --count.");
    }
    const OutputStream stream(context.options, "." + options.type);
    options.files = {literalPattern(stream.path())};
    const int code = stream.named([&] { return captureFiles(context, options); });
    stream.send();
    return code;
}

int capture(const Context& context, const CaptureOptions& options) {
    return options.toOutput() ? captureToOutput(context, options) : captureFiles(context, options);
}

// Defaults of the configuration may be idle, but not what the command line says.
void refuseIdleOptions(const CLI::App& command, const CaptureOptions& options) {
    if (command.count("--delay") > 0 && options.count == 1 && options.files.size() == 1) {
        throw Failure(kUsage, "--delay is between stills, and there is one; add --count.");
    }
    if (command.count("--type") > 0 && !options.toOutput()) {
        throw Failure(kUsage, "--type is for standard output; the name of a file says its type.");
    }
}

void addFileOptions(CLI::App& command, CaptureOptions& options) {
    command
        .add_option("FILE", options.files,
                    "Files to write: jpg, png, tif, bmp or pdf; %03d in a name is the next free "
                    "number, {date} and {time} are when it is taken, - is standard output")
        ->required()
        ->type_name("");
    command.add_option("--count", options.count, "Take each so many times, numbered by %d")
        ->check(between(1, kMaximumStills))
        ->type_name("N");
    command.add_option("--delay", options.delay, "Wait so long between stills")
        ->check(between(0, kLongestDelay))
        ->type_name("SECONDS");
    command
        .add_option("--type", options.type,
                    "The type for standard output: jpg (unless given), png, tif, bmp or pdf")
        ->check(oneOf({"jpg", "png", "tif", "bmp", "pdf"}))
        ->type_name("CHOICE");
    command.add_flag("--force", options.force, "Replace files that exist");
}

} // namespace

void addCaptureCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<CaptureOptions>();
    CLI::App* command = app.add_subcommand("capture", "Take a still for each file named");
    addFileOptions(*command, *options);
    addCaptureOptions(*command, options->still);
    addCropOption(*command, options->crop, Crop::kRectangle,
                  "Cut out the sheet, taken for a rectangle; --crop=sheet also one seen at an "
                  "angle",
                  &options->usualCrop);
    addLookOption(*command, [options](Look look) { options->look = look; });
    addPageOptions(*command, options->still.page);
    addPaperOptions(*command, options->paper);
    command->footer(
        "Examples:\n"
        "  doccam capture page.jpg\n"
        "  doccam capture --crop --clean-edges --colour bw page.png\n"
        "  doccam capture --crop=sheet --look paper page.jpg\n"
        "  doccam capture --size 1280x960 --rotate 90 --quality 70 first.jpg second.pdf\n"
        "  doccam capture --count 12 --delay 5 page-%03d.jpg\n"
        "  doccam capture - | doccam read -");
    command->callback([&context, command, options] {
        context.settle = [command, options] {
            refuseIdleOptions(*command, *options);
            if (options->look && options->usualCrop) {
                options->crop = Crop::kSheet;
            }
        };
        context.run = [&context, options] { return capture(context, *options); };
    });
}

} // namespace doccam::host
