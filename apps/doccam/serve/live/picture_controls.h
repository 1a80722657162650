// The camera's picture controls, as sliders show them.
#pragma once

#include "camera/controls.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace doccam::serve {

struct PictureControl {
    std::string name;
    host::ControlState state;
};

// While a camera streams; the command thread.
class PictureControls {
  public:
    static std::vector<std::string> names();

    // What the camera has of them, as it stands now.
    std::vector<PictureControl> read() const;

    // Sets a control, held to its range, or to its default with no value. False when the camera has
    // no such control or refuses. The value is set again by restore().
    bool set(const std::string& name, std::optional<int> value);

    // Sets what the user has set to a camera that was plugged in again.
    void restore() const;

  private:
    std::map<int, int> chosen_; // selector, value
};

} // namespace doccam::serve
