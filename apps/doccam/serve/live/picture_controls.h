// The camera's picture controls, for the page's sliders.
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

// Use while a camera streams, on the command thread.
class PictureControls {
  public:
    static std::vector<std::string> names();

    // The current state of the controls that the camera has.
    std::vector<PictureControl> read() const;

    // Sets a control to value, clamped to its range, or without value to its default. False if the
    // camera lacks the control or refuses. restore() sets the value again.
    bool set(const std::string& name, std::optional<int> value);

    // Applies the user's values to a camera that was plugged in again.
    void restore() const;

  private:
    std::map<int, int> chosen_; // selector, value
};

} // namespace doccam::serve
