#include "serve/live/picture_controls.h"

#include <algorithm>

namespace doccam::serve {

std::vector<std::string> PictureControls::names() {
    std::vector<std::string> names;
    names.reserve(host::kControlNames.size());
    for (const host::ControlName& control : host::kControlNames) {
        names.emplace_back(control.text);
    }
    return names;
}

std::vector<PictureControl> PictureControls::read() const {
    std::vector<PictureControl> controls;
    for (const host::ControlName& control : host::kControlNames) {
        const auto state = host::readControl(control.selector);
        if (state && state->maximum > state->minimum) {
            controls.push_back({control.text, *state});
        }
    }
    return controls;
}

bool PictureControls::set(const std::string& name, std::optional<int> value) {
    const auto selector = host::selectorOf(name);
    const auto state = selector ? host::readControl(*selector) : std::nullopt;
    if (!state) {
        return false;
    }
    const int wanted =
        std::clamp(value.value_or(state->defaultValue), state->minimum, state->maximum);
    if (!host::writeControl(*selector, wanted)) {
        return false;
    }
    chosen_.erase(*selector);
    if (value) {
        chosen_[*selector] = wanted;
    }
    return true;
}

void PictureControls::restore() const {
    for (const auto& [selector, value] : chosen_) {
        host::writeControl(selector, value);
    }
}

} // namespace doccam::serve
