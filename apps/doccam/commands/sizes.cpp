// doccam sizes: the frame sizes that a camera offers.
#include "camera/cameras.h"
#include "commands/commands.h"
#include "host/context.h"
#include "host/failure.h"
#include "host/own_output.h"

namespace doccam::host {
namespace {

Json asJson(const std::vector<Size>& sizes) {
    Json array = Json::array();
    for (const Size size : sizes) {
        array.push_back({{"width", size.width}, {"height", size.height}});
    }
    return array;
}

void printRow(Format format, const std::vector<Size>& sizes) {
    std::string row = nameOf(format) + ":";
    row.resize(6, ' ');
    for (const Size size : sizes) {
        row += ' ' + textOf(size);
    }
    printLine(row);
}

int sizes(const Context& context) {
    const int camera = context.options.camera;
    requireCamera(camera);
    Json object{{"camera", camera}};
    bool any = false;
    for (const Format format : {Format::kMjpeg, Format::kYuyv}) {
        const std::vector<Size> offered = offeredSizes(camera, format);
        any = any || !offered.empty();
        object[nameOf(format)] = asJson(offered);
        if (!context.options.json) {
            printRow(format, offered);
        }
    }
    if (context.options.json) {
        printJson(object);
    }
    if (!any) {
        throw Failure(kCameraFailed, "Camera " + std::to_string(camera) +
                                         " offers no frame size; doccam doctor says why.");
    }
    return kDone;
}

} // namespace

void addSizesCommand(CLI::App& app, Context& context) {
    CLI::App* command = app.add_subcommand("sizes", "List the frame sizes that a camera offers");
    command->footer("Examples:\n"
                    "  doccam sizes\n"
                    "  doccam sizes --camera 1 --json");
    command->callback([&context] { context.run = [&context] { return sizes(context); }; });
}

} // namespace doccam::host
