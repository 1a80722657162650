// The command line of doccam serve.
#include "commands/commands.h"
#include "host/context.h"
#include "host/failure.h"
#include "serve/serve.h"

#include <memory>

namespace doccam::host {
namespace {

constexpr int kHighestPort = 65535;

struct Arguments {
    serve::ServeOptions options;
    std::string size;
    std::string format;
};

std::optional<Size> wantedSize(const std::string& text) {
    const std::optional<Size> size = text.empty() ? std::nullopt : parseSize(text);
    if (!size && !text.empty()) {
        throw Failure(kUsage, "The size " + text + " makes no sense; write it as 1280x960.");
    }
    return size;
}

std::optional<Format> wantedFormat(const std::string& name) {
    if (name.empty()) {
        return std::nullopt;
    }
    return name == nameOf(Format::kMjpeg) ? Format::kMjpeg : Format::kYuyv;
}

int run(const Context& context, const Arguments& arguments) {
    serve::ServeOptions options = arguments.options;
    options.wish = {context.options.camera, wantedFormat(arguments.format),
                    wantedSize(arguments.size)};
    options.json = context.options.json;
    return serve::serve(options, *context.interrupt);
}

} // namespace

void addServeCommand(CLI::App& app, Context& context) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand("serve", "Show the live picture in a browser");
    command
        ->add_option("--listen", arguments->options.address,
                     "The address to listen at; other machines reach none but this one's own")
        ->type_name("ADDRESS")
        ->capture_default_str();
    command->add_option("--port", arguments->options.port, "The port; 0 takes a free one")
        ->check(CLI::Range(0, kHighestPort))
        ->type_name("PORT")
        ->capture_default_str();
    command->add_option("--size", arguments->size, "The frame size; else the largest")
        ->type_name("WIDTHxHEIGHT");
    command->add_option("--format", arguments->format, "The pixel format; else MJPEG where offered")
        ->check(CLI::IsMember({nameOf(Format::kMjpeg), nameOf(Format::kYuyv)}));
    command->footer("Prints the address to open, which holds a secret, and serves until Ctrl-C.\n"
                    "\n"
                    "Examples:\n"
                    "  doccam serve\n"
                    "  doccam serve --port 8080 --size 1600x1200\n"
                    "  doccam serve --listen 0.0.0.0    (for a phone in the same network)");
    command->callback([&context, arguments] {
        context.run = [&context, arguments] { return run(context, *arguments); };
    });
}

} // namespace doccam::host
