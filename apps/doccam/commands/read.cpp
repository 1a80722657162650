// doccam read: bar codes and QR codes from picture files or from the camera.
#include "camera/camera_choice.h"
#include "codes/code_reading.h"
#include "commands/commands.h"
#include "commands/options.h"
#include "host/confinement/confinement.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "host/progress.h"
#include "pictures/picture_limits.h"
#include "streams/picture_inputs.h"

#include <chrono>
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
};

std::vector<CodeKind> kindsOf(const std::string& name) {
    if (name == "any") {
        return {CodeKind::kQr, CodeKind::kBar};
    }
    return {name == "qr" ? CodeKind::kQr : CodeKind::kBar};
}

Json asJson(const std::string& source, const Code& code) {
    return {{"source", source}, {"kind", nameOf(code.kind)}, {"text", code.text}};
}

std::string asText(const Code& code) {
    return nameOf(code.kind) + ": " + code.text;
}

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
        const FileCodes found =
            inputs.named([&] { return codesInFile(path, kindsOf(options.kind), context); });
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

int readLive(const Context& context, const ReadOptions& options) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<double>(options.seconds);
    const std::string source = "camera " + std::to_string(chosenCamera(context.options.camera));
    const auto session = openForStills(context, options.still);
    Result result(context.options.json, Json::array());
    do {
        for (const CodeKind kind : kindsOf(options.kind)) {
            if (const std::string text = liveCode(*session, kind); !text.empty()) {
                result.add(asJson(source, {kind, text}), asText({kind, text}));
            }
        }
    } while (result.value.empty() && Clock::now() < end);
    if (result.value.empty()) {
        throw Failure(kNothingFound, "No code was found before " + source +
                                         "; bring it closer, or wait longer with --wait.");
    }
    return kDone;
}

int read(const Context& context, const ReadOptions& options) {
    return options.files.empty() ? readLive(context, options) : readFiles(context, options);
}

} // namespace

void addReadCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<ReadOptions>();
    CLI::App* command =
        app.add_subcommand("read", "Read codes from picture files, or from the camera");
    command
        ->add_option("FILE", options->files,
                     "Pictures to read, - for standard input; none: the camera")
        ->type_name("");
    command->add_option("--kind", options->kind, "qr, bar or any")
        ->check(oneOf({"qr", "bar", "any"}))
        ->type_name("CHOICE");
    command->add_option("--wait", options->seconds, "How long to look for a code before the camera")
        ->check(between(0, kLongestWait))
        ->type_name("SECONDS");
    addCaptureOptions(*command, options->still);
    command->footer("Examples:\n"
                    "  doccam read\n"
                    "  doccam read --kind qr page.jpg other.png --json\n"
                    "  doccam capture - | doccam read -");
    command->callback([&context, options] {
        context.run = [&context, options] { return read(context, *options); };
    });
}

} // namespace doccam::host
