// doccam calibrate: the scale of the camera's desk, by a sheet of known size on it.
#include "camera/calibrations.h"
#include "camera/usb_identity.h"
#include "commands/commands.h"
#include "commands/options.h"
#include "commands/paper/paper_options.h"
#include "documents/paper/desk_measuring.h"
#include "documents/paper/paper_names.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "host/state_folder.h"
#include "pages/sheets.h"
#include "scan/page_source.h"

#include <cmath>
#include <ctime>
#include <memory>
#include <string>

namespace doccam::host {
namespace {

constexpr int kFrames = 12;

struct CalibrateOptions {
    std::string paper;
    StillOptions still;
    bool list = false;
    std::string forget; // a camera, or all
};

double dpiOf(const Desk& desk) {
    const Millimetres paper = desk.paper;
    const double pixels =
        (cv::norm(desk.corners[1] - desk.corners[0]) + cv::norm(desk.corners[2] - desk.corners[1]) +
         cv::norm(desk.corners[3] - desk.corners[2]) +
         cv::norm(desk.corners[0] - desk.corners[3])) /
        2;
    const double dpi = pixels * kInch / (paper.width + paper.height);
    return std::round(dpi * 100) / 100;
}

Json rowOf(const Calibration& calibration) {
    const Desk& desk = calibration.desk;
    return {{"camera", calibration.camera}, {"width", desk.frame.width},
            {"height", desk.frame.height},  {"paper", paperText(desk.paper)},
            {"dpi", dpiOf(desk)},           {"made", calibration.made}};
}

std::string lineOf(const Calibration& calibration) {
    const Desk& desk = calibration.desk;
    const Json row = rowOf(calibration);
    return calibration.camera + "  " + textOf(Size{desk.frame.width, desk.frame.height}) + "  " +
           paperText(desk.paper) + "  " + row["dpi"].dump() + " dpi";
}

Desk measuredDesk(CameraSession& session, Millimetres paper) {
    std::vector<std::optional<FrameCorners>> sheets;
    cv::Size size;
    for (int i = 0; i < kFrames; ++i) {
        const cv::Mat frame = decoded(session.nextFrameFile());
        const auto found = findSheets(frame, 1);
        size = frame.size();
        sheets.push_back(found.empty() ? std::nullopt : std::optional(found.front().corners));
    }
    const FrameCorners sheet = meanSheet(sheets, size);
    const cv::Size seen = sizeOfPage({.corners = sheet}, size);
    return {size, sheet, turnedToFit(paper, static_cast<double>(seen.width) / seen.height)};
}

int calibrate(const Context& context, const CalibrateOptions& options) {
    const auto session = openForStills(context, options.still);
    const Calibration calibration{usbIdentityOf(session->camera()),
                                  measuredDesk(*session, *parsePaper(options.paper)),
                                  std::time(nullptr)};
    CalibrationFile(configFolder()).keep(calibration);
    Result result(context.options.json, rowOf(calibration));
    result.tell(lineOf(calibration));
    return kDone;
}

int tellOf(const Context& context, const std::vector<Calibration>& calibrations) {
    Result result(context.options.json, Json::array());
    for (const Calibration& calibration : calibrations) {
        result.add(rowOf(calibration), lineOf(calibration));
    }
    return kDone;
}

int forget(const Context& context, const CalibrateOptions& options) {
    const auto size = options.still.size;
    const auto forgotten =
        CalibrationFile(configFolder())
            .forget(options.forget == "all" ? "" : options.forget,
                    size ? std::optional(cv::Size(size->width, size->height)) : std::nullopt);
    if (forgotten.empty()) {
        throw Failure(kNothingFound, "There is no such calibration; doccam calibrate --list shows "
                                     "which there are.");
    }
    return tellOf(context, forgotten);
}

int run(const Context& context, const CalibrateOptions& options) {
    if (options.list) {
        return tellOf(context, CalibrationFile(configFolder()).read());
    }
    return options.forget.empty() ? calibrate(context, options) : forget(context, options);
}

} // namespace

void addCalibrateCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<CalibrateOptions>();
    CLI::App* command =
        app.add_subcommand("calibrate", "Measure the desk by a sheet of known size on it");
    CLI::Option* const paper =
        command
            ->add_option(
                "PAPER", options->paper,
                "The sheet: a3, a4, a5, letter, legal, id1, or WIDTHxHEIGHT in millimetres")
            ->check(refuseOddPaper)
            ->type_name("");
    addCaptureOptions(*command, options->still);
    CLI::Option* const list =
        command->add_flag("--list", options->list, "List the calibrations")->excludes(paper);
    command
        ->add_option("--forget", options->forget,
                     "Forget those of a camera, as --list names it, or all; with --size those of "
                     "one frame size")
        ->excludes(paper)
        ->excludes(list)
        ->type_name("CAMERA");
    command->footer("Lay the sheet flat on the desk, whole in view. Until the camera is moved, "
                    "pages then have\n"
                    "their true size, wherever on the desk their sheets lie.\n\n"
                    "Examples:\n"
                    "  doccam calibrate a4\n"
                    "  doccam calibrate id1 --size 1280x960\n"
                    "  doccam calibrate --list\n"
                    "  doccam calibrate --forget 0c45:6366");
    command->callback([&context, options] {
        if (options->paper.empty() && !options->list && options->forget.empty()) {
            throw CLI::RequiredError("PAPER");
        }
        context.run = [&context, options] { return run(context, *options); };
    });
}

} // namespace doccam::host
