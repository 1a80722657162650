// doccam: document cameras from the command line.
#include "commands/commands.h"
#include "configuration/configured_options.h"
#include "host/apart.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "pictures/picture_limits.h"
#include "pictures/reading.h"
#include "streams/input_file.h"

#include <opencv2/core/utils/logger.hpp>
#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <csignal>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace doccam::host;

// The first unparsed word that is not an option; empty if there is none.
std::string unknownWord(const CLI::App& app) {
    const std::vector<std::string> words = app.remaining();
    const auto word = std::find_if(words.begin(), words.end(),
                                   [](const std::string& one) { return one.substr(0, 1) != "-"; });
    return word == words.end() ? "" : *word;
}

std::string usageMessage(const CLI::App& app, const CLI::ParseError& error) {
    const std::string word = app.get_subcommands().empty() ? unknownWord(app) : "";
    return word.empty() ? error.what() : "There is no command \"" + word + "\"";
}

// Parses the command line; returns an exit code if there is nothing to run.
std::optional<int> parse(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
        return std::nullopt;
    } catch (const CLI::Success& success) {
        const int code = app.exit(success);
        finishOutput();
        return code;
    } catch (const CLI::ParseError& error) {
        complain(usageMessage(app, error) + "; doccam --help shows what there is.");
        return kUsage;
    }
}

// The cameras would decode anything, without limits.
void tryPhoto(const Context& context) {
    const std::string& photo = context.virtualCamera.photo;
    requireInputFile(photo);
    const PictureLimits limits = pictureLimits();
    const Bounds bounds{.bytes = limits.workingBytes(), .processor = limits.working / 3};
    const Apart tried = runApart(*context.interrupt, bounds, [&](const Report& /*report*/) {
        divertLibraryLines(context.options.verbose);
        readPicture(photo, cv::IMREAD_COLOR);
    });
    if (tried.end != ApartEnd::kDone) {
        throw Failure(kUsage, "The photo " + photo +
                                  " takes too much memory or time to decode; give --virtual= "
                                  "another one.");
    }
}

int run(Context& context, int argc, char** argv) {
    const std::unique_ptr<CLI::App> app = makeCommandLine(context);
    if (const std::optional<int> code = parse(*app, argc, argv)) {
        return *code;
    }
    applyConfiguration(*app, context.configuration);
    if (context.settle) {
        context.settle();
    }
    if (context.options.virtualCamera) {
        if (!context.virtualCamera.photo.empty() && virtualCameraFolders().empty()) {
            tryPhoto(context);
        }
        context.interrupt->check();
        moveUnderVirtualCamera(context.virtualCamera, argv);
    }
    if (!context.options.verbose) {
        cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
    }
    divertLibraryLines(context.options.verbose);
    context.interrupt->check();
    context.interrupt.reset();
    context.interrupt =
        std::make_unique<Interrupt>(context.patience, context.interruptedCode, context.ctrlC);
    if (context.interruptedCode == kInterrupted) {
        context.interrupt->check();
    }
    const int code = context.run();
    finishOutput();
    return code;
}

} // namespace

int main(int argc, char** argv) {
    blockSignals();
    holdStandardStreams();
    // A closed pipe and a file past its limit become failed writes instead of killing the process.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    Context context;
    try {
        // Until the command has its own: a help text, too, may be printed to a reader that hangs.
        context.interrupt = std::make_unique<Interrupt>(context.patience);
        return run(context, argc, argv);
    } catch (const Interruption& interruption) {
        return interruption.code();
    } catch (const Failure& failure) {
        std::fflush(out());
        complain(failure.what());
        return failure.code();
    } catch (const std::exception& error) {
        complain(std::string("The command failed: ") + error.what() +
                 "; run it again with --verbose.");
        return kCameraFailed;
    }
}
