#include "commands/options.h"

#include "camera/camera_choice.h"
#include "host/texts.h"

#include <algorithm>
#include <map>
#include <utility>

namespace doccam::host {
namespace {

const std::map<std::string, Format> kFormats{{"mjpeg", Format::kMjpeg}, {"yuyv", Format::kYuyv}};
const std::map<std::string, Colour> kColours = [] {
    std::map<std::string, Colour> colours;
    for (const char* name : kColourNames) {
        colours.emplace(name, static_cast<Colour>(colours.size()));
    }
    return colours;
}();
const std::map<std::string, Look> kLooks{{"photo", Look::kPhoto}, {"paper", Look::kPaper}};
const std::map<std::string, Crop> kCrops{{"sheet", Crop::kSheet}, {"rectangle", Crop::kRectangle}};
const std::map<std::string, int> kTurns{{"0", 0}, {"90", 1}, {"180", 2}, {"270", 3}};

constexpr int kBestQuality = 100;

// Adds an option whose value must be one of the map's names.
template <typename Value, typename Store>
CLI::Option* addChoice(CLI::App& command, const std::string& name,
                       const std::map<std::string, Value>& choices, const std::string& help,
                       Store store) {
    std::vector<std::string> names;
    names.reserve(choices.size());
    for (const auto& [choice, value] : choices) {
        names.push_back(choice);
    }
    return command
        .add_option_function<std::string>(
            name, [&choices, store](const std::string& choice) { store(choices.at(choice)); }, help)
        ->check(oneOf(names))
        ->type_name("CHOICE");
}

std::string refuseOddSize(const std::string& text) {
    return parseSize(text) ? "" : text + " is no size; write it as 1280x960";
}

} // namespace

OptionCheck oneOf(std::vector<std::string> choices) {
    return [choices = std::move(choices)](const std::string& value) -> std::string {
        const bool known = std::find(choices.begin(), choices.end(), value) != choices.end();
        return known ? "" : "\"" + value + "\" is none of " + listed(choices);
    };
}

OptionCheck between(int least, int most) {
    return [least, most](const std::string& value) -> std::string {
        const auto number = parseNumber<double>(value);
        return number && *number >= least && *number <= most
                   ? ""
                   : "\"" + value + "\" is no number from " + std::to_string(least) + " to " +
                         std::to_string(most);
    };
}

void addCaptureOptions(CLI::App& command, StillOptions& options) {
    command
        .add_option_function<std::string>(
            "--size", [&options](const std::string& text) { options.size = parseSize(text); },
            "Frame size; the largest unless given")
        ->check(refuseOddSize)
        ->type_name("WIDTHxHEIGHT");
    addChoice(command, "--format", kFormats, "Pixel format: mjpeg or yuyv",
              [&options](Format format) { options.format = format; });
}

void addColourOption(CLI::App& command, const std::function<void(Colour)>& store) {
    addChoice(command, "--colour,--color", kColours,
              "colour, grey (or gray) or bw (black and white)", store)
        ->transform([](const std::string& name) { return name == "gray" ? "grey" : name; });
}

void addLookOption(CLI::App& command, const std::function<void(Look)>& store) {
    addChoice(command, "--look", kLooks, "photo (as seen) or paper (evenly lit)", store);
}

// CLI11 gives "true" for the option without a value.
void addCropOption(CLI::App& command, Crop& crop, Crop usual, const std::string& help,
                   bool* givenAlone) {
    const auto given = std::make_shared<std::string>();
    const auto choice = [usual](const std::string& name) -> std::optional<Crop> {
        const auto found = kCrops.find(name);
        return name == "true"          ? std::optional(usual)
               : name == "false"       ? std::optional(Crop::kNone)
               : found != kCrops.end() ? std::optional(found->second)
                                       : std::nullopt;
    };
    command.add_flag("--crop", *given, help)
        ->option_text("[=CHOICE]")
        ->check([choice](const std::string& name) {
            return choice(name) ? "" : "\"" + name + "\" is none of sheet, rectangle";
        })
        ->each([&crop, choice, given, givenAlone](const std::string& name) {
            crop = *choice(name);
            if (givenAlone != nullptr) {
                *givenAlone = name == "true";
            }
        });
}

void addPageOptions(CLI::App& command, PageSettings& page) {
    addChoice(command, "--rotate", kTurns, "Turn clockwise by 0, 90, 180 or 270 degrees",
              [&page](int turns) { page.quarterTurns = turns; });
    addColourOption(command, [&page](Colour colour) { page.colour = colour; });
    command.add_flag("--clean-edges", page.cleanEdges, "Whiten the dark margins around the sheet");
    command.add_flag("--clean-background", page.cleanBackground, "Whiten the paper");
    command.add_option("--quality", page.quality, "Quality of JPEG files and of pages, 0 to 100")
        ->check(between(0, kBestQuality))
        ->type_name("N");
}

std::unique_ptr<CameraSession> openForStills(const Context& context, const StillOptions& options) {
    const int camera = chosenCamera(context.options.camera);
    const Capture capture = chooseCapture(camera, options.format, options.size);
    apply(options.page);
    return std::make_unique<CameraSession>(camera, capture, *context.interrupt);
}

} // namespace doccam::host
