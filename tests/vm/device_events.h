// udev's events about video devices.
#pragma once

#include <libudev.h>

#include <memory>
#include <string>

namespace doccam::vm {

// Collects events from construction on.
class DeviceEvents {
  public:
    DeviceEvents();

    // Waits for count events of this action, "add" or "remove", since the last wait. A camera
    // causes two, for its capture and its metadata node.
    void waitFor(const std::string& action, int count);

  private:
    struct Unref {
        void operator()(udev* context) const { udev_unref(context); }

        void operator()(udev_monitor* monitor) const { udev_monitor_unref(monitor); }
    };

    std::unique_ptr<udev, Unref> context_;
    std::unique_ptr<udev_monitor, Unref> monitor_;
};

} // namespace doccam::vm
