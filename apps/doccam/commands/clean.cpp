// doccam clean: whitens margins and paper of picture files.
#include "commands/commands.h"
#include "commands/options.h"
#include "host/apart.h"
#include "host/confinement/confinement.h"
#include "host/failure.h"
#include "host/output_file.h"
#include "host/own_output.h"
#include "host/texts.h"
#include "pictures/picture_limits.h"
#include "pictures/reading.h"
#include "pictures/writing.h"
#include "pictures/written_file.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgcodecs.hpp>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

struct CleanOptions {
    std::vector<std::string> files;
    std::string folder;
    bool inPlace = false;
    bool edges = false;
    bool background = false;
    bool brightSheet = false;
    int quality = 95;
    bool force = false;
};

fs::path targetOf(const fs::path& file, const CleanOptions& options) {
    if (options.inPlace) {
        return file;
    }
    if (!options.folder.empty()) {
        return fs::path(options.folder) / file.filename();
    }
    fs::path target = file;
    return target.replace_filename(file.stem().string() + "-clean" + file.extension().string());
}

// Through a file, as the library offers this only for files.
cv::Mat withoutDimMargins(cv::Mat page, const OutputFile& target) {
    std::string work = target.part("work.png");
    writePicture(target, work, page, 0);
    page.release();
    FN_DeleteBlackEdgeEx2(work.data());
    return readPicture(work, cv::IMREAD_COLOR);
}

// Without a choice, both steps are applied.
cv::Mat cleaned(cv::Mat page, const CleanOptions& options, const OutputFile& target) {
    const bool both = options.edges == options.background;
    if (options.brightSheet) {
        page = withoutDimMargins(std::move(page), target);
    } else if (both || options.edges) {
        FN_DeleteBlackEdge(page);
    }
    if (both || options.background) {
        FN_DeleteBackcolor(page);
    }
    return page;
}

// Reports the picture's width and height.
void writeCleaned(const std::string& file, const CleanOptions& options, const OutputFile& target,
                  const Report& report) {
    try {
        const cv::Mat page = cleaned(readPicture(file, cv::IMREAD_COLOR), options, target);
        writePicture(target, target.draft(), page, options.quality);
        report(std::to_string(page.cols));
        report(std::to_string(page.rows));
    } catch (const cv::Exception& error) {
        throw Failure(kUsage, "The picture " + file + " cannot be cleaned: " + error.err +
                                  "; leave it out.");
    }
}

WrittenFile cleanFile(const Context& context, const std::string& file,
                      const CleanOptions& options) {
    requirePicture(file);
    OutputFile target(targetOf(file, options), options.force);
    const PictureLimits limits = pictureLimits();
    const Bounds bounds{.bytes = limits.workingBytes(),
                        .processor = limits.working,
                        .confined = context.options.confined};
    const Apart made = runApart(*context.interrupt, bounds, [&](const Report& report) {
        writeCleaned(file, options, target, report);
    });
    if (made.end != ApartEnd::kDone || made.reports.size() != 2) {
        throw Failure(kUsage, "The picture " + file +
                                  " cannot be cleaned; look whether it is sound, or leave it out.");
    }
    target.publish(target.draft());
    const auto number = [](const std::string& text) { return parseNumber<int>(text).value_or(0); };
    return describeFile(target.target().string(),
                        {number(made.reports[0]), number(made.reports[1])});
}

// A link is written to its target.
Reach reachOf(const CleanOptions& options) {
    Reach reach{.read = {options.files.begin(), options.files.end()}};
    for (const std::string& file : options.files) {
        const fs::path target = fs::absolute(targetOf(file, options));
        std::error_code ignored;
        reach.write.push_back(fs::weakly_canonical(target, ignored).parent_path());
    }
    return reach;
}

int clean(const Context& context, const CleanOptions& options) {
    if (context.options.confined) {
        confineFiles(reachOf(options), *context.interrupt);
    }
    Result result(context.options.json, Json::array());
    for (const std::string& file : options.files) {
        context.interrupt->check();
        const WrittenFile written = cleanFile(context, file, options);
        result.add(asJson(written), asText(written));
    }
    return kDone;
}

} // namespace

void addCleanCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<CleanOptions>();
    CLI::App* command =
        app.add_subcommand("clean", "Whiten the margins and the paper of picture files");
    command
        ->add_option("FILE", options->files,
                     "Pictures to clean; NAME.jpg is written as NAME-clean.jpg beside it")
        ->required()
        ->type_name("");
    command->add_flag("--edges", options->edges, "Only whiten the dark margins around the sheet");
    command->add_flag("--background", options->background, "Only whiten the paper");
    command->add_flag("--bright-sheet", options->brightSheet,
                      "Whiten all but what is bright, for desks that are not black");
    CLI::Option* into =
        command
            ->add_option("--into", options->folder, "Write into this folder, under the same name")
            ->type_name("FOLDER");
    CLI::Option* force = command->add_flag("--force", options->force, "Replace files that exist");
    command->add_flag("--in-place", options->inPlace, "Replace the pictures themselves")
        ->needs(force)
        ->excludes(into);
    command->add_option("--quality", options->quality, "Quality of JPEG files, 0 to 100")
        ->check(between(0, 100))
        ->type_name("N");
    command->footer("Examples:\n"
                    "  doccam clean page.jpg\n"
                    "  doccam clean --edges --bright-sheet --into cleaned *.jpg\n"
                    "  doccam clean --in-place --force page.png");
    command->callback([&context, options] {
        context.run = [&context, options] { return clean(context, *options); };
    });
}

} // namespace doccam::host
