#include "remote/plugging.h"

#include <sstream>

namespace doccam::virtualcam {

std::string devicesPath(const std::string& controlPath) {
    return controlPath + ".devices";
}

std::optional<PlugRequest> parsePlugRequest(const std::string& line) {
    std::istringstream words(line);
    std::string what;
    int camera = -1;
    if (!(words >> what >> camera) || camera < 0 || (what != "plug" && what != "unplug")) {
        return std::nullopt;
    }
    return PlugRequest{what == "plug", camera};
}

std::optional<int> parseFramesRequest(const std::string& line) {
    std::istringstream words(line);
    std::string what;
    int camera = -1;
    if (!(words >> what >> camera) || camera < 0 || what != "frames") {
        return std::nullopt;
    }
    return camera;
}

std::optional<FrameCount> parseFrameCount(const std::string& answer) {
    std::istringstream words(answer);
    std::string ok;
    FrameCount count;
    if (!(words >> ok >> count.sent >> count.missed >> count.longestWait) || ok != "ok") {
        return std::nullopt;
    }
    return count;
}

std::optional<Nodes> parseNodes(const std::string& answer) {
    std::istringstream words(answer);
    std::string ok;
    Nodes nodes;
    if (!(words >> ok >> nodes.capture >> nodes.metadata) || ok != "ok") {
        return std::nullopt;
    }
    return nodes;
}

} // namespace doccam::virtualcam
