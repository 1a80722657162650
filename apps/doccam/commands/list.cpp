// doccam list: the attached cameras.
#include "camera/cameras.h"
#include "commands/commands.h"
#include "host/context.h"
#include "host/failure.h"
#include "host/result.h"

namespace doccam::host {
namespace {

constexpr const char* kNoName = "(cannot be opened; run doccam doctor)";

int list(const Context& context) {
    const std::vector<Camera> cameras = attachedCameras();
    Result result(context.options.json, Json::array());
    for (const Camera& camera : cameras) {
        result.add({{"index", camera.index}, {"name", camera.name}},
                   std::to_string(camera.index) + "  " +
                       (camera.name.empty() ? kNoName : camera.name));
    }
    if (cameras.empty()) {
        throw Failure(kNoCamera, "No supported document camera is attached; plug one in, or run "
                                 "doccam doctor.");
    }
    return kDone;
}

} // namespace

void addListCommand(CLI::App& app, Context& context) {
    CLI::App* command = app.add_subcommand("list", "List the cameras that are attached");
    command->footer("Examples:\n"
                    "  doccam list\n"
                    "  doccam list --json");
    command->callback([&context] { context.run = [&context] { return list(context); }; });
}

} // namespace doccam::host
