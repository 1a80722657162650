// doccam capture: stills, one file each.
#include "commands/commands.h"
#include "commands/options.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "pictures/pdf_file.h"
#include "pictures/written_file.h"

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

struct CaptureOptions {
    StillOptions still;
    std::vector<std::string> files;
    bool force = false;
};

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

void take(const Context& context, CameraSession& session, OutputFile& target, bool crop) {
    if (crop && !session.findSheet()) {
        throw Failure(kNothingFound, "No sheet was found for " + target.target().string() +
                                         "; lay one on a dark desk, or leave out --crop.");
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

int capture(const Context& context, const CaptureOptions& options) {
    Targets targets = claim(options);
    const auto session = openForStills(context, options.still);
    Result result(context.options.json, Json::array());
    for (const auto& target : targets) {
        take(context, *session, *target, options.still.page.crop);
        const WrittenFile written = describeFile(target->target().string());
        result.add(asJson(written), asText(written));
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
    command->add_flag("--crop", options->still.page.crop, "Cut out the sheet and straighten it");
    addPageOptions(*command, options->still.page);
    command->add_flag("--force", options->force, "Replace files that exist");
    command->footer(
        "Examples:\n"
        "  doccam capture page.jpg\n"
        "  doccam capture --crop --clean-edges --colour bw page.png\n"
        "  doccam capture --size 1280x960 --rotate 90 --quality 70 first.jpg second.pdf");
    command->callback([&context, options] {
        context.run = [&context, options] { return capture(context, *options); };
    });
}

} // namespace doccam::host
