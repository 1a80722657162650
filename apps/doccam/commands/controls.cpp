// doccam controls: reads, sets and resets the picture controls.
#include "camera/controls.h"

#include "commands/commands.h"
#include "commands/options/still_options.h"
#include "host/context.h"
#include "host/failure.h"
#include "host/result.h"

#include <charconv>
#include <memory>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

struct ControlsOptions {
    std::vector<std::string> wishes; // NAME or NAME=VALUE
    bool reset = false;
};

struct Wish {
    std::string name;
    int selector = 0;
    std::optional<int> value;
};

std::string allNames() {
    std::string names;
    for (const ControlName& control : kControlNames) {
        names += (names.empty() ? "" : ", ") + std::string(control.text);
    }
    return names;
}

int parseValue(const std::string& text, const std::string& wish) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) {
        throw Failure(kUsage, "The value in " + wish + " is no whole number; write " +
                                  wish.substr(0, wish.find('=')) + "=10.");
    }
    return value;
}

Wish parseWish(const std::string& text) {
    const auto equals = text.find('=');
    Wish wish{text.substr(0, equals), 0, {}};
    const auto selector = selectorOf(wish.name);
    if (!selector) {
        throw Failure(kUsage,
                      "There is no control " + wish.name + "; choose one of " + allNames() + ".");
    }
    wish.selector = *selector;
    if (equals != std::string::npos) {
        wish.value = parseValue(text.substr(equals + 1), text);
    }
    return wish;
}

std::vector<Wish> wishesOf(const ControlsOptions& options) {
    std::vector<Wish> wishes;
    for (const std::string& text : options.wishes) {
        wishes.push_back(parseWish(text));
    }
    if (wishes.empty()) {
        for (const ControlName& control : kControlNames) {
            wishes.push_back({control.text, control.selector, {}});
        }
    }
    return wishes;
}

[[noreturn]] void failToSet(const Wish& wish) {
    throw Failure(kCameraFailed, "The camera did not take a new " + wish.name +
                                     "; look whether it sets it by itself.");
}

void set(const Wish& wish, const ControlState& state, int value) {
    if (value < state.minimum || value > state.maximum) {
        throw Failure(kUsage, "The camera's " + wish.name + " goes from " +
                                  std::to_string(state.minimum) + " to " +
                                  std::to_string(state.maximum) + ", which " +
                                  std::to_string(value) + " is not; choose a value in between.");
    }
    if (!writeControl(wish.selector, value)) {
        failToSet(wish);
    }
}

// The control after the wish has been granted; none when the camera has no such control.
std::optional<ControlState> grant(const Wish& wish, bool reset) {
    const auto state = readControl(wish.selector);
    if (!state) {
        return std::nullopt;
    }
    if (wish.value) {
        set(wish, *state, *wish.value);
    } else if (reset && !resetControl(wish.selector)) {
        failToSet(wish);
    }
    return readControl(wish.selector);
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
    const std::vector<Wish> wishes = wishesOf(options);
    const auto session = openForStills(context, {});
    Result result(context.options.json, Json::array());
    for (const Wish& wish : wishes) {
        context.interrupt->check();
        const auto state = grant(wish, options.reset);
        if (state) {
            result.add(asJson(wish.name, *state), asText(wish.name, *state));
        } else if (!options.wishes.empty()) {
            throw Failure(kNothingFound, "The camera has no control " + wish.name +
                                             "; doccam controls shows which it has.");
        }
    }
    return kDone;
}

} // namespace

void addControlsCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<ControlsOptions>();
    CLI::App* command = app.add_subcommand("controls", "Show or set the picture controls");
    command
        ->add_option("NAME[=VALUE]", options->wishes,
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

} // namespace doccam::host
