#include "device/controls.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace doccam::virtualcam {

namespace {

template <std::size_t Length, typename Character>
void copyName(Character (&target)[Length], const std::string& name) {
    std::memset(target, 0, Length);
    std::memcpy(target, name.data(), std::min(name.size(), Length - 1));
}

std::uint32_t typeOf(const ControlDescription& control) {
    return control.boolean ? V4L2_CTRL_TYPE_BOOLEAN : V4L2_CTRL_TYPE_INTEGER;
}

} // namespace

ControlBank::ControlBank(const std::vector<ControlDescription>& controls, bool strict)
  : strict_(strict) {
    for (const ControlDescription& control : controls) {
        controls_.push_back({control, control.defaultValue});
    }
    std::sort(controls_.begin(), controls_.end(), [](const Control& a, const Control& b) {
        return a.description.id < b.description.id;
    });
}

const ControlBank::Control* ControlBank::find(std::uint32_t id) const {
    const auto found = std::find_if(controls_.begin(), controls_.end(),
                                    [&](const Control& c) { return c.description.id == id; });
    return found == controls_.end() ? nullptr : &*found;
}

const ControlBank::Control* ControlBank::findQueried(std::uint32_t id) const {
    constexpr std::uint32_t kNext = V4L2_CTRL_FLAG_NEXT_CTRL | V4L2_CTRL_FLAG_NEXT_COMPOUND;
    if ((id & kNext) == 0) {
        return find(id);
    }
    if ((id & V4L2_CTRL_FLAG_NEXT_CTRL) == 0) {
        return nullptr;
    }
    const auto found = std::find_if(controls_.begin(), controls_.end(), [&](const Control& c) {
        return c.description.id > (id & ~kNext);
    });
    return found == controls_.end() ? nullptr : &*found;
}

std::uint32_t ControlBank::flagsOf(const Control& control) const {
    const bool inactive = control.description.id == V4L2_CID_FOCUS_ABSOLUTE &&
                          value(V4L2_CID_FOCUS_AUTO).value_or(0) != 0;
    return inactive ? V4L2_CTRL_FLAG_INACTIVE : 0;
}

int ControlBank::query(v4l2_queryctrl& record) const {
    const Control* control = findQueried(record.id);
    if (control == nullptr) {
        return EINVAL;
    }
    const ControlDescription& description = control->description;
    record = {};
    record.id = description.id;
    record.type = typeOf(description);
    copyName(record.name, description.name);
    record.minimum = description.minimum;
    record.maximum = description.maximum;
    record.step = description.step;
    record.default_value = description.defaultValue;
    record.flags = flagsOf(*control);
    return 0;
}

int ControlBank::query(v4l2_query_ext_ctrl& record) const {
    const Control* control = findQueried(record.id);
    if (control == nullptr) {
        return EINVAL;
    }
    const ControlDescription& description = control->description;
    record = {};
    record.id = description.id;
    record.type = typeOf(description);
    copyName(record.name, description.name);
    record.minimum = description.minimum;
    record.maximum = description.maximum;
    record.step = static_cast<std::uint64_t>(description.step);
    record.default_value = description.defaultValue;
    record.flags = flagsOf(*control);
    record.elem_size = sizeof(std::int32_t);
    record.elems = 1;
    return 0;
}

int ControlBank::get(v4l2_control& record) const {
    const Control* control = find(record.id);
    if (control == nullptr) {
        return EINVAL;
    }
    record.value = control->value;
    return 0;
}

int ControlBank::adjust(const Control& control, int& value) const {
    const ControlDescription& range = control.description;
    if (strict_ && (value < range.minimum || value > range.maximum)) {
        return ERANGE;
    }
    const int inside = std::clamp(value, range.minimum, range.maximum);
    value = inside - (inside - range.minimum) % std::max(range.step, 1);
    return 0;
}

int ControlBank::set(v4l2_control& record) {
    const Control* control = find(record.id);
    if (control == nullptr) {
        return EINVAL;
    }
    const int error = adjust(*control, record.value);
    if (error == 0) {
        controls_[static_cast<std::size_t>(control - controls_.data())].value = record.value;
    }
    return error;
}

int ControlBank::getAll(v4l2_ext_controls& list) const {
    for (std::uint32_t i = 0; i < list.count; ++i) {
        v4l2_control single{list.controls[i].id, 0};
        if (const int error = get(single); error != 0) {
            list.error_idx = list.count;
            return error;
        }
        list.controls[i].value = single.value;
    }
    return 0;
}

int ControlBank::setAll(v4l2_ext_controls& list, bool apply) {
    for (std::uint32_t i = 0; i < list.count; ++i) {
        v4l2_control single{list.controls[i].id, list.controls[i].value};
        const Control* control = find(single.id);
        int error = control == nullptr ? EINVAL : adjust(*control, single.value);
        if (error == 0 && apply) {
            error = set(single);
        }
        if (error != 0) {
            list.error_idx = apply ? list.count : i;
            return error;
        }
        list.controls[i].value = single.value;
    }
    return 0;
}

std::optional<int> ControlBank::value(std::uint32_t id) const {
    const Control* control = find(id);
    return control == nullptr ? std::nullopt : std::optional(control->value);
}

} // namespace doccam::virtualcam
