// The command line: global options and all commands.
#include "camera/camera_choice.h"
#include "commands/commands.h"
#include "commands/options.h"

#include <doccam/version.h>

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace doccam::host {
namespace {

constexpr const char* kFooter = R"(Exit codes:
  0 done, 1 nothing found, 2 usage, 3 no camera, 4 camera failed,
  5 file could not be written, 130 interrupted

Examples:
  doccam list
  doccam scan letter.pdf
  doccam --profile receipts scan --auto receipts.pdf
  doccam --virtual scan demo.pdf --auto --pages 3)";

void addConfigurationOptions(CLI::App& app, ConfigChoice& choice) {
    const auto refuseEmpty = [](const std::string& text) {
        return text.empty() ? std::string("a name is missing") : std::string();
    };
    app.add_option("--config", choice.file,
                   "The file with defaults of options; unless given, "
                   "~/.config/doccam/config.toml")
        ->type_name("FILE")
        ->check(refuseEmpty);
    app.add_flag("--no-config", choice.none, "Use no such file");
    app.add_option("--profile", choice.profile, "Use this profile of the file")
        ->type_name("NAME")
        ->check(refuseEmpty);
}

// CLI11 stores "true" for the flag without a value.
void addVirtualOption(CLI::App& app, Context& context) {
    const auto given = std::make_shared<std::string>();
    app.add_flag("--virtual", *given,
                 "Use virtual cameras; --virtual=PHOTO has them look at that picture")
        ->option_text("[=PHOTO]")
        ->each([&context, given](const std::string& photo) {
            context.options.virtualCamera = photo != "false";
            context.virtualCamera.photo = photo == "true" || photo == "false" ? "" : photo;
        });
}

void addGlobalOptions(CLI::App& app, Context& context) {
    GlobalOptions& options = context.options;
    app.add_flag("--verbose", options.verbose, "Print the library's diagnostics on standard error")
        ->take_last();
    app.add_flag("--json", options.json, "Print results as JSON")->take_last();
    app.add_flag("--quiet", options.quiet, "Show no progress")->take_last();
    app.add_option("--camera", options.camera,
                   "The camera to use: its index, a part of its name, its USB id or its device "
                   "node, as doccam list shows them")
        ->type_name("CAMERA")
        ->check(refuseOddCamera);
    app.add_flag_function(
        "--no-confinement", [&options](std::int64_t count) { options.confined = count < 1; },
        "Keep what clean, read and serve give up: other files, the network, programs");
    addVirtualOption(app, context);
    addConfigurationOptions(app, context.configuration);
}

void addCommands(CLI::App& app, Context& context) {
    addListCommand(app, context);
    addSizesCommand(app, context);
    addCalibrateCommand(app, context);
    addCaptureCommand(app, context);
    addScanCommand(app, context);
    addSpoolCommand(app, context);
    addReadCommand(app, context);
    addControlsCommand(app, context);
    addFocusCommand(app, context);
    addPdfCommand(app, context);
    addCleanCommand(app, context);
    addDoctorCommand(app, context);
    addServeCommand(app, context);
}

} // namespace

std::unique_ptr<CLI::App> makeCommandLine(Context& context) {
    auto app = std::make_unique<CLI::App>("Document cameras: frames, pages, codes", "doccam");
    app->set_version_flag("--version", std::string("doccam ") + DOCCAM_VERSION_STRING,
                          "Print the version and exit");
    app->set_help_flag("-h,--help", "Print this help and exit");
    app->footer(kFooter);
    app->require_subcommand(1);
    // Global options may also follow the command's name.
    app->fallthrough();
    addGlobalOptions(*app, context);
    addCommands(*app, context);
    return app;
}

} // namespace doccam::host
