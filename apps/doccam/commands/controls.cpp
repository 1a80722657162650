// doccam controls and doccam focus: the picture controls, and making the camera focus.
#include "camera/controls.h"

#include "commands/commands.h"
#include "commands/options.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "host/texts.h"

#include <doccam/doccam.h>

#include <memory>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

struct ControlsOptions {
    std::vector<std::string> requests; // NAME or NAME=VALUE
    bool reset = false;
};

struct ControlRequest {
    std::string name;
    int selector = 0;
    std::optional<int> value;
};

std::string allNames() {
    return listed(kControlNames, &ControlName::text);
}

int parseValue(const std::string& text, const std::string& request) {
    const auto value = parseNumber<int>(text);
    if (!value) {
        throw Failure(kUsage, "The value in " + request + " is no whole number; write " +
                                  request.substr(0, request.find('=')) + "=10.");
    }
    return *value;
}

ControlRequest parseRequest(const std::string& text) {
    const auto equals = text.find('=');
    ControlRequest request{text.substr(0, equals), 0, {}};
    const auto selector = selectorOf(request.name);
    if (!selector) {
        throw Failure(kUsage, "There is no control " + request.name + "; choose one of " +
                                  allNames() + ".");
    }
    request.selector = *selector;
    if (equals != std::string::npos) {
        request.value = parseValue(text.substr(equals + 1), text);
    }
    return request;
}

std::vector<ControlRequest> requestsOf(const ControlsOptions& options) {
    std::vector<ControlRequest> requests;
    for (const std::string& text : options.requests) {
        requests.push_back(parseRequest(text));
    }
    if (requests.empty()) {
        for (const ControlName& control : kControlNames) {
            requests.push_back({control.text, control.selector, {}});
        }
    }
    return requests;
}

[[noreturn]] void failToSet(const ControlRequest& request) {
    throw Failure(kCameraFailed, "The camera did not take a new " + request.name +
                                     "; look whether it sets it by itself.");
}

void set(const ControlRequest& request, const ControlState& state, int value) {
    if (value < state.minimum || value > state.maximum) {
        throw Failure(kUsage, "The camera's " + request.name + " goes from " +
                                  std::to_string(state.minimum) + " to " +
                                  std::to_string(state.maximum) + ", which " +
                                  std::to_string(value) + " is not; choose a value in between.");
    }
    if (!writeControl(request.selector, value)) {
        failToSet(request);
    }
}

// Applies one request; returns the control's state, or none if the camera lacks it.
std::optional<ControlState> grant(const ControlRequest& request, bool reset) {
    const auto state = readControl(request.selector);
    if (!state) {
        return std::nullopt;
    }
    if (request.value) {
        set(request, *state, *request.value);
    } else if (reset && !resetControl(request.selector)) {
        failToSet(request);
    }
    return readControl(request.selector);
}

Json asJson(const std::string& name, const ControlState& state) {
    return {{"name", name},
            {"value", state.value},
            {"minimum", state.minimum},
            {"maximum", state.maximum},
            {"default", state.defaultValue}};
}

std::string asText(const std::string& name, const ControlState& state) {
    std::string row = name;
    row.resize(12, ' ');
    return row + std::to_string(state.value) + "  (" + std::to_string(state.minimum) + " to " +
           std::to_string(state.maximum) + ", default " + std::to_string(state.defaultValue) + ")";
}

int controls(const Context& context, const ControlsOptions& options) {
    const std::vector<ControlRequest> requests = requestsOf(options);
    const auto session = openForStills(context, {});
    Result result(context.options.json, Json::array());
    for (const ControlRequest& request : requests) {
        context.interrupt->check();
        const auto state = grant(request, options.reset);
        if (state) {
            result.add(asJson(request.name, *state), asText(request.name, *state));
        } else if (!options.requests.empty()) {
            throw Failure(kNothingFound, "The camera has no control " + request.name +
                                             "; doccam controls shows which it has.");
        }
    }
    return kDone;
}

// A camera needs about a second to focus, and does so only while it streams.
constexpr int kFramesToFocus = 20;

int focus(const Context& context, bool switchOver) {
    const auto session = openForStills(context, {});
    const int result = switchOver ? ManualFocus() : ManualFocusEx();
    if (result != DOCCAM_OK) {
        throw Failure(kCameraFailed, "Camera " + context.options.camera + " did not focus (code " +
                                         std::to_string(result) +
                                         "); plug it in again and repeat.");
    }
    session->waitForFrames(kFramesToFocus);
    return kDone;
}

} // namespace

void addControlsCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<ControlsOptions>();
    CLI::App* command = app.add_subcommand("controls", "Show or set the picture controls");
    command
        ->add_option("NAME[=VALUE]", options->requests,
                     "Controls to show or to set; none: all (" + allNames() + ")")
        ->type_name("");
    command->add_flag("--reset", options->reset, "Set to the defaults what has no VALUE");
    command->footer("Examples:\n"
                    "  doccam controls\n"
                    "  doccam controls brightness=20 contrast\n"
                    "  doccam controls --reset");
    command->callback([&context, options] {
        context.run = [&context, options] { return controls(context, *options); };
    });
}

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
