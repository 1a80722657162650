#include "serve/picture_controls.h"

#include <doccam/doccam.h>

#include <algorithm>

namespace doccam::serve {
namespace {

std::optional<PictureControl> readControl(int selector) {
    PictureControl control{PictureControls::names()[static_cast<std::size_t>(selector)]};
    if (GetVideoCtlParam(selector, &control.minimum, &control.maximum, &control.standard,
                         &control.value) != 0) {
        return std::nullopt;
    }
    return control;
}

// The control is read first: writing the last selector writes to the one used last.
bool write(int selector, int value) {
    const auto control = readControl(selector);
    return control &&
           SetVideoCtlParam(selector, std::clamp(value, control->minimum, control->maximum)) == 0;
}

} // namespace

const std::vector<std::string>& PictureControls::names() {
    static const std::vector<std::string> names{"brightness", "contrast", "saturation",
                                                "hue",        "gain",     "gamma"};
    return names;
}

std::vector<PictureControl> PictureControls::read() const {
    std::vector<PictureControl> controls;
    for (int selector = 0; selector < static_cast<int>(names().size()); ++selector) {
        if (const auto control = readControl(selector);
            control && control->maximum > control->minimum) {
            controls.push_back(*control);
        }
    }
    return controls;
}

bool PictureControls::set(const std::string& name, std::optional<int> value) {
    const auto found = std::find(names().begin(), names().end(), name);
    const int selector = static_cast<int>(found - names().begin());
    const auto control = found == names().end() ? std::nullopt : readControl(selector);
    if (!control || !write(selector, value.value_or(control->standard))) {
        return false;
    }
    chosen_.erase(selector);
    if (value) {
        chosen_[selector] = *value;
    }
    return true;
}

void PictureControls::restore() {
    for (const auto& [selector, value] : chosen_) {
        write(selector, value);
    }
}

} // namespace doccam::serve
