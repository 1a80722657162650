// Turning findings into advice.
#pragma once

#include "doctor/examination.h"

namespace doccam::host {

enum class Level { kWell, kNote, kTrouble };

struct Advice {
    Level level = Level::kNote;
    std::string subject; // a node, a file, or "cameras"
    std::string what;
    std::string remedy; // empty if nothing needs to be done
    std::string node{}; // "/dev/video0", if it is about a camera
    std::string usbId{};
    std::optional<int> index{}; // the library's, of a camera that it finds
};

// "ok", "note" and "trouble".
std::string nameOf(Level level);

std::vector<Advice> adviceOn(const Findings& findings);

// The node's line for the table of models: "vvvv:pppp  # name".
std::string modelRow(const Node& node);

} // namespace doccam::host
