// doccam doctor: says what is wrong with the cameras, and what to do.
#include "commands/commands.h"
#include "doctor/advice.h"
#include "doctor/examination.h"
#include "doctor/model_table.h"
#include "host/context.h"
#include "host/failure.h"
#include "host/own_output.h"

#include <algorithm>
#include <memory>

namespace doccam::host {
namespace {

Json asJson(const Advice& advice) {
    return {{"level", nameOf(advice.level)},
            {"subject", advice.subject},
            {"what", advice.what},
            {"remedy", advice.remedy}};
}

void print(const Advice& advice) {
    printLine(nameOf(advice.level) + ": " + advice.subject + ": " + advice.what);
    if (!advice.remedy.empty()) {
        printLine("    " + advice.remedy);
    }
}

int resultOf(const Findings& findings, const std::vector<Advice>& advice) {
    const bool camera = std::any_of(findings.nodes.begin(), findings.nodes.end(),
                                    [](const Node& node) { return node.supported; });
    const bool trouble = std::any_of(advice.begin(), advice.end(), [](const Advice& one) {
        return one.level == Level::kTrouble;
    });
    return !camera ? kNoCamera : trouble ? kCameraFailed : kDone;
}

// Each model once, also where two of its cameras are attached.
Json addUnsupported(const Context& context, const Findings& findings) {
    Json added = Json::array();
    ModelTable table = findings.table;
    for (const Node& node : findings.nodes) {
        const bool known = node.supported || node.vendor.empty() ||
                           std::find(added.begin(), added.end(), modelRow(node)) != added.end();
        if (known) {
            continue;
        }
        addRow(table, modelRow(node));
        table = tableInForce();
        added.push_back(modelRow(node));
        if (!context.options.json) {
            printLine("added to " + table.addTo + ": " + modelRow(node));
        }
    }
    return added;
}

int doctor(const Context& context, bool add) {
    const Findings findings = examine();
    const std::vector<Advice> advice = adviceOn(findings);
    Json object{{"models", findings.table.file.empty() ? "built in" : findings.table.file},
                {"advice", Json::array()}};
    for (const Advice& one : advice) {
        object["advice"].push_back(asJson(one));
        if (!context.options.json) {
            print(one);
        }
    }
    const Json added = add ? addUnsupported(context, findings) : Json::array();
    if (add) {
        object["added"] = added;
    }
    if (context.options.json) {
        printJson(object);
    }
    return added.empty() ? resultOf(findings, advice) : kDone;
}

} // namespace

void addDoctorCommand(CLI::App& app, Context& context) {
    const auto add = std::make_shared<bool>(false);
    CLI::App* command = app.add_subcommand("doctor", "Say what is wrong with the cameras");
    command->add_flag("--add", *add, "Add the cameras that are attached to the supported models");
    command->footer("Exit codes: 0 all is well, 3 no supported camera, 4 trouble with one.\n\n"
                    "Examples:\n"
                    "  doccam doctor\n"
                    "  sudo doccam doctor --add");
    command->callback(
        [&context, add] { context.run = [&context, add] { return doctor(context, *add); }; });
}

} // namespace doccam::host
