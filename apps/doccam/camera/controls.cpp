#include "camera/controls.h"

#include <doccam/doccam.h>

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

} // namespace doccam::host
