// doccam list and doccam sizes: the attached cameras, and the frame sizes that one offers.
#include "camera/camera_choice.h"
#include "camera/cameras.h"
#include "commands/commands.h"
#include "host/failure.h"
#include "host/own_output.h"

namespace doccam::host {
namespace {

constexpr const char* kNoName = "(cannot be opened; run doccam doctor)";

int list(const Context& context) {
    const std::vector<Camera> cameras = attachedCameras();
    Result result(context.options.json, Json::array());
    for (const Camera& camera : cameras) {
        result.add({{"index", camera.index},
                    {"name", camera.name},
                    {"path", camera.node},
                    {"usb", camera.usbId}},
                   std::to_string(camera.index) + "  " +
                       (camera.name.empty() ? kNoName : camera.name) + "  " + camera.node + "  " +
                       camera.usbId);
    }
    if (cameras.empty()) {
        failWithoutCamera();
    }
    return kDone;
}

Json asJson(const std::vector<Size>& sizes) {
    Json array = Json::array();
    for (const Size size : sizes) {
        array.push_back({{"width", size.width}, {"height", size.height}});
    }
    return array;
}

std::string asText(Format format, const std::vector<Size>& sizes) {
    std::string row = nameOf(format) + ":";
    row.resize(6, ' ');
    for (const Size size : sizes) {
        row += ' ' + textOf(size);
    }
    return row;
}

int sizes(const Context& context) {
    const int camera = chosenCamera(context.options.camera);
    requireCamera(camera);
    Result result(context.options.json, {{"camera", camera}});
    bool any = false;
    for (const Format format : {Format::kMjpeg, Format::kYuyv}) {
        const std::vector<Size> offered = offeredSizes(camera, format);
        any = any || !offered.empty();
        result.value[nameOf(format)] = asJson(offered);
        result.tell(asText(format, offered));
    }
    if (!any) {
        failWithoutSizes(camera);
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

void addSizesCommand(CLI::App& app, Context& context) {
    CLI::App* command = app.add_subcommand("sizes", "List the frame sizes that a camera offers");
    command->footer("Examples:\n"
                    "  doccam sizes\n"
                    "  doccam sizes --camera \"doc cam\" --json");
    command->callback([&context] { context.run = [&context] { return sizes(context); }; });
}

} // namespace doccam::host
