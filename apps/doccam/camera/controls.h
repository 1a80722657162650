// The picture controls of the open camera.
#pragma once

#include <array>
#include <optional>
#include <string>

namespace doccam::host {

struct ControlName {
    const char* text;
    int selector; // the library's
};

inline constexpr std::array<ControlName, 6> kControlNames{
    {{"brightness", 0}, {"contrast", 1}, {"saturation", 2}, {"hue", 3}, {"gain", 4}, {"gamma", 5}}};

struct ControlState {
    int minimum = 0;
    int maximum = 0;
    int defaultValue = 0;
    int value = 0;
};

// The selector of the control called name; none when there is no such control.
std::optional<int> selectorOf(const std::string& name);

// While a session is open. None when the camera does not have the control.
std::optional<ControlState> readControl(int selector);

// Whether the camera took the value. The control must have been found by readControl.
bool writeControl(int selector, int value);

// Whether the camera took its default.
bool resetControl(int selector);

} // namespace doccam::host
