// doccam focus: makes the camera focus.
#include "commands/commands.h"
#include "commands/options.h"
#include "host/failure.h"
#include "host/own_output.h"

#include <doccam/doccam.h>

#include <memory>

namespace doccam::host {
namespace {

// A camera needs about a second to focus, and does so only while it streams.
constexpr int kFramesToFocus = 20;

int focus(const Context& context, bool switchOver) {
    const auto session = openForStills(context, {});
    const int result = switchOver ? ManualFocus() : ManualFocusEx();
    if (result != DOCCAM_OK) {
        throw Failure(kCameraFailed, "Camera " + std::to_string(context.options.camera) +
                                         " did not focus (code " + std::to_string(result) +
                                         "); plug it in again and repeat.");
    }
    session->waitForFrames(kFramesToFocus);
    return kDone;
}

} // namespace

void addFocusCommand(CLI::App& app, Context& context) {
    const auto switchOver = std::make_shared<bool>(false);
    CLI::App* command = app.add_subcommand("focus", "Have the camera focus once");
    command->add_flag("--switch", *switchOver,
                      "Switch between the two focus distances of a camera without auto-focus");
    command->footer("Examples:\n"
                    "  doccam focus\n"
                    "  doccam focus --switch --camera 1");
    command->callback([&context, switchOver] {
        context.run = [&context, switchOver] { return focus(context, *switchOver); };
    });
}

} // namespace doccam::host
