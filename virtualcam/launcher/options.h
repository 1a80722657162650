// The launcher's command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace doccam::virtualcam {

struct Options {
    std::string scenario; // path; empty: the default cameras
    std::string photo;    // path; empty: as in the scenario
    std::optional<int> intervalMs;
    std::optional<int> sheetFrames;
    std::vector<std::string> command; // the program and its arguments; not empty
};

// None if the command line is invalid.
std::optional<Options> parseOptions(int argc, const char* const* argv);

} // namespace doccam::virtualcam
