// doccam clean: whitens margins and paper of picture files, or makes pages of the sheets in them.
#include "clean/clean_options.h"
#include "clean/page_cleaning.h"
#include "clean/picture_cleaning.h"
#include "commands/commands.h"
#include "commands/options.h"
#include "commands/paper/paper_options.h"
#include "host/confinement/confinement.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "host/progress.h"
#include "pages/sheet_json.h"
#include "streams/output_stream.h"
#include "streams/picture_inputs.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

// A link is written to its target.
Reach reachOf(const CleanOptions& options, const PictureInputs& inputs) {
    const std::vector<std::string> files = inputs.files();
    Reach reach{.read = {files.begin(), files.end()}};
    for (const std::string& file : options.files) {
        const fs::path target = fs::absolute(targetOf(file, options));
        std::error_code ignored;
        reach.write.push_back(fs::weakly_canonical(target, ignored).parent_path());
    }
    return reach;
}

// Without a page: no sheet was found.
Json rowOf(const std::string& source, const CleanedPage* page) {
    Json row{{"source", source}};
    row.update(asJson(page != nullptr ? page->sheet : std::nullopt));
    row["file"] = nullptr;
    if (page != nullptr) {
        row.update(asJson(page->written));
        row.update(asJson(page->sized));
    }
    return row;
}

// The sentence of a picture without a sheet.
void complainOf(const std::string& file, const CleanOptions& options) {
    complain("No sheet was found in " + file +
             "; photograph it whole and with some desk around it, or leave out " +
             (options.each ? "--each." : "--crop."));
}

// Returns whether there was a sheet, if one was to be found.
bool addPages(const Context& context, const std::string& file, const CleanOptions& options,
              Result& result) {
    const auto pages = cleanPages(context, file, options);
    for (const CleanedPage& page : pages) {
        result.add(rowOf(file, &page), asText(page.written));
    }
    if (pages.empty()) {
        result.value.push_back(rowOf(file, nullptr));
    }
    return !pages.empty();
}

bool addPicture(const Context& context, const std::string& file, const CleanOptions& options,
                Result& result) {
    const auto written = cleanPicture(context, file, options);
    if (written) {
        result.add(asJson(*written), asText(*written));
    } else {
        result.value.push_back(rowOf(file, nullptr));
    }
    return written.has_value();
}

int cleanFiles(const Context& context, const CleanOptions& options, const PictureInputs& inputs) {
    refuseContradictions(options);
    if (context.options.confined) {
        confineFiles(reachOf(options, inputs), *context.interrupt);
    }
    Result result(context.options.json, Json::array());
    const Progress progress(context.options, "cleaning", options.files.size());
    const auto add = byPageEngine(options) ? addPages : addPicture;
    int code = kDone;
    std::size_t number = 0;
    for (const std::string& file : options.files) {
        context.interrupt->check();
        progress.show(++number);
        if (!add(context, file, options, result)) {
            complainOf(inputs.wordsFor(file), options);
            code = kNothingFound;
        }
    }
    return code;
}

// ".jpg" for a JPEG, and otherwise ".png".
std::string extensionFor(const std::string& picture, const CleanOptions& options) {
    std::array<char, 3> start{};
    std::ifstream(picture, std::ios::binary).read(start.data(), start.size());
    const bool isJpeg = std::string_view(start.data(), start.size()) == "\xFF\xD8\xFF";
    return isJpeg && options.colour != Colour::kBlackAndWhite ? ".jpg" : ".png";
}

// From standard input to standard output.
int cleanStream(const Context& context, CleanOptions options) {
    if (options.files.size() > 1 || !options.folder.empty() || options.inPlace || options.each) {
        throw Failure(kUsage,
                      "Standard input is cleaned to standard output; leave out other files, "
                      "--into, --in-place and --each.");
    }
    const PictureInputs inputs(options.files, *context.interrupt);
    const OutputStream stream(context.options, extensionFor(inputs.paths().front(), options));
    options.files = inputs.paths();
    options.target = stream.path();
    const int code = stream.named(
        [&] { return inputs.named([&] { return cleanFiles(context, options, inputs); }); });
    if (code == kDone) {
        stream.send();
    }
    return code;
}

int clean(const Context& context, const CleanOptions& options) {
    if (std::any_of(options.files.begin(), options.files.end(), isStandardStream)) {
        return cleanStream(context, options);
    }
    return cleanFiles(context, options, PictureInputs(options.files, *context.interrupt));
}

void addPageOptions(CLI::App& command, CleanOptions& options) {
    addCropOption(command, options.crop, Crop::kSheet,
                  "Make a page of the sheet; --crop=rectangle takes it for a rectangle, as stills "
                  "do");
    command.add_flag("--each", options.each, "Make a page of every sheet: NAME-clean-1, -2 ...");
    addLookOption(command, [&options](Look look) { options.look = look; });
    addColourOption(command, [&options](Colour colour) { options.colour = colour; });
    addPaperOptions(command, options.paper);
}

void addOlderOptions(CLI::App& command, CleanOptions& options) {
    command.add_flag("--edges", options.edges, "Only whiten the dark margins around the sheet");
    command.add_flag("--background", options.background, "Only whiten the paper");
    command.add_flag("--bright-sheet", options.brightSheet,
                     "Whiten all but what is bright, for desks that are not black");
}

void addFileOptions(CLI::App& command, CleanOptions& options) {
    CLI::Option* into =
        command.add_option("--into", options.folder, "Write into this folder, under the same name")
            ->type_name("FOLDER");
    CLI::Option* force = command.add_flag("--force", options.force, "Replace files that exist");
    command.add_flag("--in-place", options.inPlace, "Replace the pictures themselves")
        ->needs(force)
        ->excludes(into);
    command.add_option("--quality", options.quality, "Quality of JPEG files, 0 to 100")
        ->check(between(0, 100))
        ->type_name("N");
}

} // namespace

void addCleanCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<CleanOptions>();
    CLI::App* command =
        app.add_subcommand("clean", "Whiten the margins and the paper of picture files");
    command
        ->add_option("FILE", options->files,
                     "Pictures to clean; NAME.jpg is written as NAME-clean.jpg beside it, in black "
                     "and white as NAME-clean.png; - cleans standard input to standard output")
        ->required()
        ->type_name("");
    addPageOptions(*command, *options);
    addOlderOptions(*command, *options);
    addFileOptions(*command, *options);
    command->footer("Any of --crop, --each, --look and --colour makes pages: with the look of "
                    "paper unless\n--look is given, in colour unless --colour is given.\n\n"
                    "Examples:\n"
                    "  doccam clean page.jpg\n"
                    "  doccam clean --crop photo.jpg\n"
                    "  doccam clean --crop --colour bw --json photo.jpg\n"
                    "  doccam clean --each --look photo receipts.jpg\n"
                    "  doccam clean --edges --bright-sheet --into cleaned *.jpg\n"
                    "  doccam clean --in-place --force page.png\n"
                    "  doccam clean --crop - <photo.jpg >page.jpg");
    command->callback([&context, options] {
        context.run = [&context, options] { return clean(context, *options); };
    });
}

} // namespace doccam::host
