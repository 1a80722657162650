// doccam read: codes from picture files or from the camera.
#include "camera/camera_choice.h"
#include "codes/code_rows.h"
#include "codes/file_codes.h"
#include "codes/frame_codes.h"
#include "codes/new_codes.h"
#include "codes/symbology_names.h"
#include "commands/commands.h"
#include "commands/options.h"
#include "host/confinement/confinement.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "host/progress.h"
#include "host/texts.h"
#include "pictures/picture_limits.h"
#include "streams/picture_inputs.h"

#include <chrono>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

constexpr int kLongestWait = 3600;

struct ReadOptions {
    StillOptions still;
    std::vector<std::string> files;
    std::string kind = "any";
    double seconds = 5;
    bool watch = false;

    unsigned symbologies() const { return symbologiesIn(kind).value_or(0); }
};

int readFiles(const Context& context, const ReadOptions& options) {
    const bool several = options.files.size() > 1;
    const PictureInputs inputs(options.files, *context.interrupt);
    if (context.options.confined) {
        const std::vector<std::string> reached = inputs.files();
        confineFiles({.read = {reached.begin(), reached.end()}}, *context.interrupt);
    }
    const Progress progress(context.options, "reading", options.files.size());
    std::size_t number = 0;
    const std::string inTime = " in the " + std::to_string(pictureLimits().reading.count()) +
                               " seconds that a file gets (DOCCAM_READ_SECONDS)";
    std::vector<std::string> unfinished;
    Result result(context.options.json, Json::array());
    for (const std::string& path : inputs.paths()) {
        context.interrupt->check();
        progress.show(++number);
        const std::string file = inputs.nameOf(path);
        const CodesFound found =
            inputs.named([&] { return codesInFile(path, options.symbologies(), context); });
        for (const Code& code : found.codes) {
            result.add(asJson(file, code), (several ? file + ": " : "") + asText(code));
        }
        if (!found.complete) {
            unfinished.push_back(inputs.wordsFor(path));
        }
    }
    if (result.value.empty()) {
        throw Failure(kNothingFound, "No code was found in " +
                                         inputs.wordsFor(inputs.paths().front()) +
                                         (several ? " and the other files" : "") +
                                         (unfinished.empty() ? "" : inTime) +
                                         "; take the picture closer or larger.");
    }
    for (const std::string& file : unfinished) {
        std::string text = "Not all codes of " + file;
        text += " may have been found" + inTime + ".";
        complain(text);
    }
    return kDone;
}

std::string sourceOf(const Context& context) {
    return "camera " + std::to_string(chosenCamera(context.options.camera));
}

// What the frame had, with the diagnostics.
void noteFrame(const Context& context, const std::vector<Code>& codes) {
    if (context.options.verbose) {
        complain("The frame has " + (codes.empty() ? "no" : std::to_string(codes.size())) +
                 " codes.");
    }
}

int readLive(const Context& context, const ReadOptions& options) {
    using Clock = std::chrono::steady_clock;
    using Seconds = std::chrono::duration<double>;
    const std::string source = sourceOf(context);
    const auto session = openForStills(context, options.still);
    const auto begin = Clock::now();
    const Progress progress(context.options, "looking for codes, second",
                            static_cast<std::size_t>(std::ceil(options.seconds)));
    FrameCodes frames(*session, options.symbologies());
    Result result(context.options.json, Json::array());
    Seconds passed(0);
    do {
        progress.show(static_cast<std::size_t>(passed.count()) + 1);
        const std::vector<Code> codes = frames.next(true);
        noteFrame(context, codes);
        for (const Code& code : codes) {
            result.add(asJson(source, code), asText(code));
        }
        passed = Clock::now() - begin;
    } while (result.value.empty() && passed.count() < options.seconds);
    if (result.value.empty()) {
        throw Failure(kNothingFound, "No code was found before " + source +
                                         "; bring it closer, or wait longer with --wait.");
    }
    return kDone;
}

[[noreturn]] void watchFrames(const Context& context, const ReadOptions& options) {
    const std::string source = sourceOf(context);
    const auto session = openForStills(context, options.still);
    const Progress progress(context.options, "looking for codes; Ctrl-C ends");
    FrameCodes frames(*session, options.symbologies());
    NewCodes news;
    while (true) {
        progress.show();
        const std::vector<Code> codes = frames.next(false);
        noteFrame(context, codes);
        for (const Code& code : news.among(codes, NewCodes::Clock::now())) {
            const Json row = asJson(source, code);
            printLine(context.options.json ? oneLineOf(row) : asText(code));
            finishOutput();
        }
    }
}

int watch(const Context& context, const ReadOptions& options) {
    try {
        watchFrames(context, options);
    } catch (const Interruption&) {
        return kDone;
    }
}

int read(const Context& context, const ReadOptions& options) {
    return options.watch           ? watch(context, options)
           : options.files.empty() ? readLive(context, options)
                                   : readFiles(context, options);
}

std::string refuseOddKinds(const std::string& kinds) {
    return symbologiesIn(kinds) ? ""
                                : "\"" + kinds + "\" is none of " + listed(symbologyNames()) +
                                      ", nor several of them with commas between";
}

} // namespace

void addReadCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<ReadOptions>();
    CLI::App* command =
        app.add_subcommand("read", "Read codes from picture files, or from the camera");
    auto* const files = command
                            ->add_option("FILE", options->files,
                                         "Pictures to read, - for standard input; none: the camera")
                            ->type_name("");
    command
        ->add_option("--kind", options->kind,
                     "qr, bar, matrix or any, or symbologies such as ean-13; several with commas")
        ->check(refuseOddKinds)
        ->type_name("KINDS");
    auto* const wait = command
                           ->add_option("--wait", options->seconds,
                                        "How long to look for a code before the camera")
                           ->check(between(0, kLongestWait))
                           ->type_name("SECONDS");
    command
        ->add_flag("--watch", options->watch,
                   "Print each code that comes before the camera, until Ctrl-C")
        ->excludes(files)
        ->excludes(wait);
    addCaptureOptions(*command, options->still);
    command->footer("Examples:\n"
                    "  doccam read\n"
                    "  doccam read --watch --json\n"
                    "  doccam read --kind qr,ean-13 page.jpg other.png --json\n"
                    "  doccam capture - | doccam read -");
    command->callback([&context, options] {
        context.interruptedCode = options->watch ? kDone : kInterrupted;
        context.run = [&context, options] { return read(context, *options); };
    });
}

} // namespace doccam::host
