// The command line of doccam serve.
#include "serve/serve.h"

#include "camera/camera_choice.h"
#include "commands/commands.h"
#include "commands/options.h"

#include <chrono>
#include <memory>

namespace doccam::host {
namespace {

constexpr int kHighestPort = 65535;

// Closing a camera takes three quarters of a second.
constexpr std::chrono::milliseconds kPatience{850};

struct Arguments {
    serve::ServeOptions options;
    StillOptions still;
};

int run(const Context& context, const Arguments& arguments) {
    serve::ServeOptions options = arguments.options;
    options.choice = {chosenCamera(context.options.camera), arguments.still.format,
                      arguments.still.size};
    options.json = context.options.json;
    options.confined = context.options.confined;
    return serve::serve(options, *context.interrupt);
}

} // namespace

void addServeCommand(CLI::App& app, Context& context) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand("serve", "Show the live picture in a browser");
    command
        ->add_option("--listen", arguments->options.address,
                     "The address to listen at; unless given, this machine alone can reach it")
        ->check([](const std::string& address) {
            return address.empty() ? std::string("an address is missing") : std::string();
        })
        ->type_name("ADDRESS");
    command->add_option("--port", arguments->options.port, "The port; a free one unless given")
        ->check(between(0, kHighestPort))
        ->type_name("PORT");
    addCaptureOptions(*command, arguments->still);
    command->add_flag("--no-spool", arguments->options.noSpool,
                      "Keep no page beyond the end of the server");
    command->footer(
        "Prints the address to open, which holds a secret, and serves until Ctrl-C.\n"
        "Pages are kept until their PDF is downloaded: the next doccam serve shows them\n"
        "again, also after a crash.\n"
        "\n"
        "Examples:\n"
        "  doccam serve\n"
        "  doccam serve --port 8080 --size 1600x1200\n"
        "  doccam serve --listen 0.0.0.0    (for a phone in the same network)");
    command->callback([&context, arguments] {
        context.patience = kPatience;
        context.interruptedCode = kDone;
        context.run = [&context, arguments] { return run(context, *arguments); };
    });
}

} // namespace doccam::host
