#include "preload/remote_cameras.h"

#include "control.h"
#include "remote/line_socket.h"
#include "remote/plugging.h"

#include <cstdlib>
#include <exception>

namespace doccam::virtualcam {

namespace {

std::string obey(const std::string& line) {
    const auto counted = parseFramesRequest(line);
    const auto request = parsePlugRequest(line);
    if (!request && !counted) {
        return "error: no such request";
    }
    try {
        if (counted) {
            const FrameCount count = frameCount(*counted);
            return "ok " + std::to_string(count.sent) + " " + std::to_string(count.missed) + " " +
                   std::to_string(count.longestWait);
        }
        if (!request->plug) {
            unplug(request->camera);
            return "ok";
        }
        plug(request->camera);
        const Nodes placed = nodes(request->camera);
        return "ok " + std::to_string(placed.capture) + " " + std::to_string(placed.metadata);
    } catch (const std::exception&) {
        return "error: no such camera";
    }
}

} // namespace

void admitRemoteControl() {
    const char* path = std::getenv(kControlVariable);
    if (path == nullptr || *path == '\0') {
        return;
    }
    try {
        // Never destroyed: the program may use the cameras until it ends.
        static LineSocket& socket = *new LineSocket(devicesPath(path), obey);
        static_cast<void>(socket);
    } catch (const std::exception&) {
        return; // another process already has them
    }
}

} // namespace doccam::virtualcam
