#include "doctor/advice.h"

#include "host/texts.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>

namespace doccam::host {
namespace {

using List = std::vector<Advice>;

std::string titleOf(const Node& node) {
    return node.path + (node.name.empty() ? "" : " (" + node.name + ")");
}

// Problems of a camera that the library does not use are only a note.
void addTrouble(List& list, const Node& node, const std::string& what, const std::string& remedy) {
    list.push_back({node.supported ? Level::kTrouble : Level::kNote, titleOf(node), what, remedy});
}

std::string holderText(const Holder& holder) {
    return holder.name + " (process " + std::to_string(holder.process) + ")";
}

void adviseOnUse(List& list, const Node& node) {
    if (node.holders.empty()) {
        addTrouble(list, node, "is in use by a program that cannot be seen from here",
                   "Run sudo doccam doctor to see which, and end it.");
    } else {
        addTrouble(list, node, "is in use by " + listed(node.holders, holderText),
                   "End that program, then try again.");
    }
}

constexpr const char* kSeatRule =
    "let whoever sits at the machine use it: put SUBSYSTEM==\"video4linux\", TAG+=\"uaccess\" into "
    "/etc/udev/rules.d/70-doccam.rules and plug it in again.";

// A node of group root was missed by the udev rules; never suggest joining that group.
void adviseOnPermission(List& list, const Node& node) {
    if (node.group.empty() || node.group == "root") {
        addTrouble(list, node, "may be opened by root only",
                   std::string("Belong to the group video, and give the node to it; or ") +
                       kSeatRule);
    } else {
        addTrouble(list, node, "may not be opened by you; it belongs to the group " + node.group,
                   "Join the group with sudo usermod -aG " + node.group +
                       " $USER and log in again; or " + kSeatRule);
    }
}

void adviseOnRequest(List& list, const Node& node) {
    const Trial& trial = node.trial;
    if (trial.error == EBUSY) {
        adviseOnUse(list, node);
    } else if (trial.error == ENOSPC) {
        addTrouble(list, node, "gets too little USB bandwidth for " + trial.capture,
                   "Plug it into a socket of its own, straight into the machine and not into a "
                   "hub; or choose mjpeg and a smaller --size.");
    } else {
        addTrouble(list, node,
                   "fails at " + trial.step + " for " + trial.capture + ": " +
                       std::strerror(trial.error),
                   "Unplug it, plug it in again, and look at the end of sudo dmesg.");
    }
}

std::string ofFrames(int count, const Trial& trial) {
    return std::to_string(count) + " of " + std::to_string(trial.frames) + " frames of " +
           trial.capture;
}

void adviseOnFrames(List& list, const Node& node) {
    const Trial& trial = node.trial;
    if (trial.frames == 0) {
        addTrouble(list, node, "sends no frames of " + trial.capture,
                   "Unplug it and plug it in again; try another cable and another socket.");
        return;
    }
    if (trial.shortFrames > 0) {
        addTrouble(list, node, "sends " + ofFrames(trial.shortFrames, trial) + " cut short",
                   "Use a shorter cable and a socket in the machine itself; choose a smaller "
                   "--size.");
    }
    if (trial.framesWithoutJpeg > 0) {
        addTrouble(list, node, "sends no JPEG in " + ofFrames(trial.framesWithoutJpeg, trial),
                   "Choose --format yuyv, which this camera may do better.");
    }
    if (trial.shortFrames == 0 && trial.framesWithoutJpeg == 0) {
        list.push_back(
            {Level::kWell, titleOf(node),
             "works: " + std::to_string(trial.frames) + " sound frames of " + trial.capture, ""});
    }
}

// Warns that a file with only this row would replace the built-in table.
std::string waysToAdd(const Node& node, const ModelTable& table) {
    const std::string command =
        "run doccam doctor --add " + modelOf(node) + " for the row \"" + modelRow(node) + "\"";
    return table.file.empty() || !table.error.empty()
               ? command
               : command + ", or add it to " + table.file + " by hand";
}

void adviseOnModel(List& list, const Node& node, const ModelTable& table) {
    if (!node.supported && !node.vendor.empty()) {
        list.push_back({Level::kNote, titleOf(node), "is not among the supported models",
                        "If it is a document camera, " + waysToAdd(node, table) + "."});
    }
    if (node.secondOfModel) {
        list.push_back({Level::kNote, titleOf(node),
                        "is the second camera of its model, and only "
                        "the first of a model is found",
                        "Unplug the first to use this one."});
    }
}

void adviseOnNode(List& list, const Node& node, const ModelTable& table) {
    adviseOnModel(list, node, table);
    if (node.openError == EACCES || node.openError == EPERM) {
        adviseOnPermission(list, node);
    } else if (node.openError == EBUSY) {
        adviseOnUse(list, node);
    } else if (node.openError != 0) {
        addTrouble(list, node, std::string("cannot be opened: ") + std::strerror(node.openError),
                   "Unplug it and plug it in again.");
    } else if (node.trial.held && node.trial.error != 0) {
        adviseOnRequest(list, node);
    } else if (node.trial.held) {
        adviseOnFrames(list, node);
    }
}

} // namespace

std::string nameOf(Level level) {
    return level == Level::kWell ? "ok" : level == Level::kNote ? "note" : "trouble";
}

std::vector<Advice> adviceOn(const Findings& findings) {
    List list;
    if (!findings.deviceManager) {
        list.push_back({Level::kTrouble, "udev", "the device manager does not answer",
                        "Start it with sudo systemctl start systemd-udevd; a container needs the "
                        "machine's /run/udev."});
    } else if (findings.nodes.empty()) {
        list.push_back({Level::kTrouble, "cameras", "there is no video node",
                        "Plug a camera in. If lsusb lists it, load its driver with sudo modprobe "
                        "uvcvideo."});
    }
    if (!findings.table.error.empty()) {
        list.push_back({Level::kTrouble, findings.table.file,
                        "is not used as the table of models: " + findings.table.error,
                        "Correct it; until then the built-in table counts."});
    }
    for (const Node& node : findings.nodes) {
        const std::size_t before = list.size();
        adviseOnNode(list, node, findings.table);
        for (std::size_t i = before; i < list.size(); ++i) {
            list[i].node = node.path;
            list[i].usbId = modelOf(node);
            list[i].index = node.index;
        }
    }
    return list;
}

// The name comes from the device and must not contain line breaks.
std::string modelRow(const Node& node) {
    std::string name = node.name;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::iscntrl(c) != 0; }, ' ');
    return modelOf(node) + (name.empty() ? "" : "  # " + name);
}

} // namespace doccam::host
