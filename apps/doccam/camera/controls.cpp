#include "camera/controls.h"

#include <doccam/doccam.h>

#include <algorithm>

namespace doccam::host {

std::optional<int> selectorOf(const std::string& name) {
    for (const ControlName& control : kControlNames) {
        if (name == control.text) {
            return control.selector;
        }
    }
    return std::nullopt;
}

std::optional<ControlState> readControl(int selector) {
    ControlState state;
    if (GetVideoCtlParam(selector, &state.minimum, &state.maximum, &state.defaultValue,
                         &state.value) != DOCCAM_OK) {
        return std::nullopt;
    }
    return state;
}

// Selector 5 writes to the control used last, so gamma is read first.
bool writeControl(int selector, int value) {
    return readControl(selector) && SetVideoCtlParam(selector, value) == DOCCAM_OK;
}

bool resetControl(int selector) {
    const auto state = readControl(selector);
    return state && SetVideoCtlDefaultParam(selector) == state->defaultValue;
}

bool ChosenControls::set(const std::string& name, std::optional<int> value) {
    const auto selector = selectorOf(name);
    const auto state = selector ? readControl(*selector) : std::nullopt;
    if (!state) {
        return false;
    }
    const int wanted =
        std::clamp(value.value_or(state->defaultValue), state->minimum, state->maximum);
    if (!writeControl(*selector, wanted)) {
        return false;
    }
    chosen_.erase(*selector);
    if (value) {
        chosen_[*selector] = wanted;
    }
    return true;
}

void ChosenControls::restore() const {
    for (const auto& [selector, value] : chosen_) {
        writeControl(selector, value);
    }
}

} // namespace doccam::host
