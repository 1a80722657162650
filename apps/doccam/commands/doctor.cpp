// doccam doctor: diagnoses camera problems and suggests remedies.
#include "commands/commands.h"
#include "doctor/advice.h"
#include "host/failure.h"
#include "host/modules/with_modules.h"
#include "host/own_output.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

struct DoctorOptions {
    bool add = false;
    std::string model; // empty: the only unsupported one
};

Json asJson(const Advice& advice) {
    Json row{{"level", nameOf(advice.level)},
             {"subject", advice.subject},
             {"what", advice.what},
             {"remedy", advice.remedy}};
    if (!advice.node.empty()) {
        row["index"] = advice.index ? Json(*advice.index) : Json();
        row["path"] = advice.node;
        row["usb"] = advice.usbId.empty() ? Json() : Json(advice.usbId);
    }
    return row;
}

std::string asText(const Advice& advice) {
    return nameOf(advice.level) + ": " + advice.subject +
           (advice.usbId.empty() ? "" : ", " + advice.usbId) +
           (advice.index ? ", camera " + std::to_string(*advice.index) : "") + ": " + advice.what +
           (advice.remedy.empty() ? "" : "\n    " + advice.remedy);
}

int resultOf(const Findings& findings, const std::vector<Advice>& advice) {
    const bool camera = std::any_of(findings.nodes.begin(), findings.nodes.end(),
                                    [](const Node& node) { return node.supported; });
    const bool trouble = std::any_of(advice.begin(), advice.end(), [](const Advice& one) {
        return one.level == Level::kTrouble;
    });
    return !camera ? kNoCamera : trouble ? kCameraFailed : kDone;
}

// One node of each attached unsupported model.
std::vector<Node> foreignModels(const Findings& findings) {
    std::vector<Node> foreign;
    for (const Node& node : findings.nodes) {
        const auto isSame = [&](const Node& other) { return modelOf(other) == modelOf(node); };
        if (!node.supported && !node.vendor.empty() &&
            std::none_of(foreign.begin(), foreign.end(), isSame)) {
            foreign.push_back(node);
        }
    }
    return foreign;
}

// Only the user knows which one is a document camera.
void refuseToGuess(const std::vector<Node>& foreign) {
    std::string choices;
    for (const Node& node : foreign) {
        choices +=
            (choices.empty() ? "--add " : ", or --add ") + modelOf(node) + " (" + node.name + ")";
    }
    if (foreign.size() > 1) {
        throw Failure(kUsage,
                      "Several cameras are not supported; name the one to add: " + choices + ".");
    }
}

// The node to add; none if its model is already supported.
std::optional<Node> chosenNode(const Findings& findings, const std::string& model) {
    const std::vector<Node> foreign = foreignModels(findings);
    if (model.empty()) {
        refuseToGuess(foreign);
        return foreign.empty() ? std::nullopt : std::optional(foreign.front());
    }
    for (const Node& node : findings.nodes) {
        if (modelOf(node) == model) {
            return node.supported ? std::nullopt : std::optional(node);
        }
    }
    throw Failure(kNoCamera, "No camera " + model +
                                 " is attached; plug it in, or leave out the model to add the one "
                                 "that is.");
}

bool add(const Findings& findings, const std::string& model, Result& result) {
    result.value["added"] = Json::array();
    result.value["givenUp"] = Json::array();
    const auto node = chosenNode(findings, model);
    if (!node) {
        return false;
    }
    const std::string row = modelRow(*node);
    const std::string last = addRow(findings.table, row);
    result.value["added"].push_back(row);
    result.tell("added to " + findings.table.addTo + ": " + row);
    if (!last.empty()) {
        result.value["givenUp"].push_back(last);
        result.tell("given up for it, as nine rows are the most: " + last);
    }
    return true;
}

int doctor(const Context& context, const DoctorOptions& options) {
    withModules([] {
        checkModule(kMjpegModule);
        checkModule(kFormatsModule);
        checkModule(kDocumentsModule);
    });
    const Findings findings = examine(*context.interrupt);
    const std::vector<Advice> advice = adviceOn(findings);
    Result result(context.options.json,
                  {{"models", findings.table.file.empty() ? "built in" : findings.table.file},
                   {"advice", Json::array()}});
    for (const Advice& one : advice) {
        result.value["advice"].push_back(asJson(one));
        result.tell(asText(one));
    }
    const bool added = options.add && add(findings, options.model, result);
    return added ? kDone : resultOf(findings, advice);
}

std::string refuseOddModel(const std::string& text) {
    const auto models = parseModels(text).models;
    return models.size() == 1 && textOf(models.front()) == text
               ? ""
               : "\"" + text + "\" is no model; write it as 0c45:6366";
}

} // namespace

void addDoctorCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<DoctorOptions>();
    CLI::App* command = app.add_subcommand("doctor", "Say what is wrong with the cameras");
    command
        ->add_option_function<std::string>(
            "--add",
            [options](const std::string& model) {
                options->add = true;
                options->model = model;
            },
            "Add this model, or the only one attached, to the supported models")
        ->expected(0, 1)
        ->check(refuseOddModel)
        ->type_name("VVVV:PPPP");
    command->footer("Exit codes: 0 all is well, 3 no supported camera, 4 trouble with one.\n\n"
                    "Examples:\n"
                    "  doccam doctor\n"
                    "  sudo doccam doctor --add 0c45:6366");
    command->callback([&context, options] {
        context.run = [&context, options] { return doctor(context, *options); };
    });
}

} // namespace doccam::host
