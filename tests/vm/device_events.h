// What the device manager announces about video devices.
#pragma once

#include <libudev.h>

#include <memory>
#include <string>

namespace doccam::vm {

// Collects events from its construction on.
class DeviceEvents {
  public:
    DeviceEvents();

    // Waits until so many events of this action, "add" or "remove", have come since the last wait.
    // A camera causes two, for its pictures and for its metadata.
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
