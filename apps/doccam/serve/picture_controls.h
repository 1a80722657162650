// The camera's picture controls, as sliders show them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace doccam::serve {

struct PictureControl {
    std::string name;
    int minimum = 0, maximum = 0, standard = 0, value = 0;
};

// While a camera streams; the command thread.
class PictureControls {
  public:
    // Names in the order of the library's selectors.
    static const std::vector<std::string>& names();

    // What the camera has of them, as it stands now.
    std::vector<PictureControl> read() const;

    // Sets a control, held to its range, or to its default with no value. False when the camera has
    // no such control or refuses. The value is set again by restore().
    bool set(const std::string& name, std::optional<int> value);

    // Sets what the user has set to a camera that was plugged in again.
    void restore();

  private:
    std::map<int, int> chosen_; // selector, value
};

} // namespace doccam::serve
