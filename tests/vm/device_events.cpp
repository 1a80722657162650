#include "vm/device_events.h"

#include "base/handles/udev_handles.h"

#include <poll.h>

#include <stdexcept>

namespace doccam::vm {
namespace {

constexpr int kPatience = 60000; // milliseconds; events take tens of them

} // namespace

DeviceEvents::DeviceEvents()
  : context_(udev_new())
  , monitor_(udev_monitor_new_from_netlink(context_.get(), "udev")) {
    if (!monitor_ ||
        udev_monitor_filter_add_match_subsystem_devtype(monitor_.get(), "video4linux", nullptr) !=
            0 ||
        udev_monitor_enable_receiving(monitor_.get()) != 0) {
        throw std::runtime_error("the device manager's events cannot be received");
    }
}

void DeviceEvents::waitFor(const std::string& action, int count) {
    while (count > 0) {
        pollfd event{udev_monitor_get_fd(monitor_.get()), POLLIN, 0};
        if (poll(&event, 1, kPatience) == 0) {
            throw std::runtime_error("the device manager tells of no " + action);
        }
        const UdevDevice device(udev_monitor_receive_device(monitor_.get()));
        if (device && action == udev_device_get_action(device.get())) {
            --count;
        }
    }
}

} // namespace doccam::vm
