// The launcher's side of plugging cameras: it owns the device tree.
#pragma once

#include "bed/udev_tree.h"
#include "remote/line_socket.h"

#include <optional>
#include <string>
#include <vector>

namespace doccam::virtualcam {

class PlugControl {
  public:
    // cameras are those in the tree. Serves the socket named by the environment, if any. Throws
    // std::runtime_error on failure.
    PlugControl(UdevTree& tree, const std::vector<CameraDescription>& cameras);
    ~PlugControl();
    PlugControl(const PlugControl&) = delete;
    PlugControl& operator=(const PlugControl&) = delete;

  private:
    struct Place {
        CameraDescription camera;
        std::optional<Nodes> nodes; // none while unplugged
    };

    std::string obey(const std::string& line);
    std::string forwarded(const std::string& line) const;

    UdevTree& tree_;
    std::vector<Place> places_;
    std::string path_;
    std::optional<LineSocket> socket_;
};

} // namespace doccam::virtualcam
