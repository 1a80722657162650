#include "launcher/options.h"

#include <charconv>
#include <string_view>

namespace doccam::virtualcam {

namespace {

std::optional<int> parseCount(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size() && value >= 0;
    return whole ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv) {
    Options options;
    int i = 1;
    for (; i + 1 < argc && std::string_view(argv[i]) != "--"; i += 2) {
        const std::string_view name = argv[i];
        if (name == "--scenario") {
            options.scenario = argv[i + 1];
        } else if (name == "--photo") {
            options.photo = argv[i + 1];
        } else if (name == "--interval") {
            options.intervalMs = parseCount(argv[i + 1]);
            if (!options.intervalMs) {
                return std::nullopt;
            }
        } else if (name == "--sheet-frames") {
            options.sheetFrames = parseCount(argv[i + 1]);
            if (!options.sheetFrames) {
                return std::nullopt;
            }
        } else {
            return std::nullopt;
        }
    }
    if (i + 1 >= argc || std::string_view(argv[i]) != "--") {
        return std::nullopt;
    }
    options.command.assign(argv + i + 1, argv + argc);
    return options;
}

} // namespace doccam::virtualcam
