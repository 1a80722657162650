#include "launcher/plug_control.h"

#include "remote/plugging.h"

#include <unistd.h>

#include <cstdlib>
#include <exception>

namespace doccam::virtualcam {

PlugControl::PlugControl(UdevTree& tree, const std::vector<CameraDescription>& cameras)
  : tree_(tree) {
    for (const CameraDescription& camera : cameras) {
        const int first = 2 * static_cast<int>(places_.size());
        places_.push_back({camera, Nodes{first, first + 1}});
    }
    const char* path = std::getenv(kControlVariable);
    if (path != nullptr && *path != '\0') {
        path_ = path;
        socket_.emplace(path_, [this](const std::string& line) { return obey(line); });
    }
}

PlugControl::~PlugControl() {
    socket_.reset();
    if (!path_.empty()) {
        unlink(devicesPath(path_).c_str());
    }
}

std::string PlugControl::forwarded(const std::string& line) const {
    try {
        return ask(devicesPath(path_), line);
    } catch (const std::exception& error) {
        return std::string("error: ") + error.what();
    }
}

std::string PlugControl::obey(const std::string& line) {
    if (parseFramesRequest(line)) {
        return forwarded(line);
    }
    const auto request = parsePlugRequest(line);
    if (!request || request->camera >= static_cast<int>(places_.size())) {
        return "error: plug N, unplug N or frames N, of " + std::to_string(places_.size()) +
               " cameras";
    }
    Place& place = places_[static_cast<std::size_t>(request->camera)];
    if (request->plug == place.nodes.has_value()) {
        return "ok";
    }
    try {
        std::string answer = ask(devicesPath(path_), line);
        if (!answer.starts_with("ok")) {
            return answer;
        }
        if (request->plug) {
            place.nodes = parseNodes(answer);
            tree_.add(place.camera, request->camera, place.nodes.value(),
                      UdevTree::Order::kMetadataFirst);
        } else {
            tree_.remove(request->camera, *place.nodes);
            place.nodes.reset();
        }
        return "ok";
    } catch (const std::exception& error) {
        return std::string("error: ") + error.what();
    }
}

} // namespace doccam::virtualcam
