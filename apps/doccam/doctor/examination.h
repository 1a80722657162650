// What the doctor finds out.
#pragma once

#include "doctor/model_table.h"
#include "doctor/stream_trial.h"

#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

// A process that has a node open.
struct Holder {
    int process = 0;
    std::string name;
};

// A video node that delivers pictures.
struct Node {
    std::string path;
    std::string name;
    std::string vendor; // four hexadecimal digits; empty if not on USB
    std::string product;
    std::string group;          // the node's group
    bool supported = false;     // its id is among the supported models
    std::optional<int> index;   // the library's, of a supported camera that it finds
    bool secondOfModel = false; // the library finds only the first camera of a model
    int openError = 0;
    std::vector<Holder> holders;
    Trial trial;
};

// "vvvv:pppp"; empty if not on USB.
inline std::string modelOf(const Node& node) {
    return node.vendor.empty() ? "" : node.vendor + ":" + node.product;
}

struct Findings {
    bool deviceManager = true;
    std::vector<Node> nodes;
    ModelTable table;
};

// In the library's order, then the others. Opens each node, streams from the supported ones, and
// finds who uses them. Takes about a second per camera, longer for a silent one. Throws
// Interruption when the process is asked to end.
Findings examine(const Interrupt& interrupt);

// The processes that have a device node open, from a folder like /proc, except for the calling
// process. Only root sees the processes of other users.
std::vector<Holder> holdersOf(const std::string& node, const std::string& processes = "/proc");

} // namespace doccam::host
