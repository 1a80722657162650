// The launcher's command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace doccam::virtualcam {

struct Options {
    std::string scenario; // path; empty: the default cameras
    std::string photo;    // path; empty: as the scenario says
    std::optional<int> intervalMs;
    std::optional<int> sheetFrames;
    std::vector<std::string> command; // the program and its arguments, at least the program
};

// None where the command line makes no sense.
std::optional<Options> parseOptions(int argc, const char* const* argv);

} // namespace doccam::virtualcam
