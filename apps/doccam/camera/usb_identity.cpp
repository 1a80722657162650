#include "camera/usb_identity.h"

#include "base/handles/udev_handles.h"

#include <doccam/doccam.h>

#include <filesystem>

namespace doccam::host {
namespace {

std::string property(udev_device* device, const char* name) {
    const char* const value = udev_device_get_property_value(device, name);
    return value != nullptr ? value : "";
}

} // namespace

std::string usbIdentityOf(int index) {
    const char* const node = doccam_camera_node(index);
    const UdevContext context(udev_new());
    const std::string name = std::filesystem::path(node != nullptr ? node : "").filename();
    const UdevDevice device(
        context ? udev_device_new_from_subsystem_sysname(context.get(), "video4linux", name.c_str())
                : nullptr);
    const std::string vendor = device ? property(device.get(), "ID_VENDOR_ID") : "";
    if (vendor.empty()) {
        return "unknown";
    }
    const std::string serial = property(device.get(), "ID_SERIAL_SHORT");
    return vendor + ":" + property(device.get(), "ID_MODEL_ID") +
           (serial.empty() ? "" : ":" + serial);
}

} // namespace doccam::host
