// The picture controls of the open camera.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>

namespace doccam::host {

struct ControlName {
    const char* text;
    int selector; // as in SetVideoCtlParam
};

inline constexpr std::array<ControlName, 6> kControlNames{
    {{"brightness", 0}, {"contrast", 1}, {"saturation", 2}, {"hue", 3}, {"gain", 4}, {"gamma", 5}}};

struct ControlState {
    int minimum = 0;
    int maximum = 0;
    int defaultValue = 0;
    int value = 0;
};

// The selector of the control called name, if there is one.
std::optional<int> selectorOf(const std::string& name);

// Call these while a session is open. None if the camera lacks the control.
std::optional<ControlState> readControl(int selector);

// Whether the camera accepted the value. The control must have been found by readControl.
bool writeControl(int selector, int value);

// Whether the camera accepted the control's default.
bool resetControl(int selector);

// The values that the user has chosen. Call its members while a session is open.
class ChosenControls {
  public:
    // Sets a control to value, clamped to its range, or without value to its default. False if the
    // camera lacks the control or refuses. restore() sets the value again.
    bool set(const std::string& name, std::optional<int> value);

    // Applies the values to a camera that was plugged in again.
    void restore() const;

  private:
    std::map<int, int> chosen_; // selector, value
};

} // namespace doccam::host
