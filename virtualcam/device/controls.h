// The picture controls of a camera.
#pragma once

#include "description.h"

#include <linux/videodev2.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace doccam::virtualcam {

// Answers the control requests. All functions return 0 or an errno value. Not thread-safe.
class ControlBank {
  public:
    // A strict bank refuses out-of-range values with ERANGE; otherwise they are clamped, as by the
    // UVC driver.
    ControlBank(const std::vector<ControlDescription>& controls, bool strict);

    int query(v4l2_queryctrl& record) const;
    int query(v4l2_query_ext_ctrl& record) const;
    int get(v4l2_control& record) const;
    int set(v4l2_control& record);
    int getAll(v4l2_ext_controls& list) const;
    int setAll(v4l2_ext_controls& list, bool apply);

    std::optional<int> value(std::uint32_t id) const;

  private:
    struct Control {
        ControlDescription description;
        int value;
    };

    const Control* find(std::uint32_t id) const;
    const Control* findQueried(std::uint32_t id) const;
    std::uint32_t flagsOf(const Control& control) const;
    int adjust(const Control& control, int& value) const;

    std::vector<Control> controls_; // by ascending identifier
    bool strict_;
};

} // namespace doccam::virtualcam
