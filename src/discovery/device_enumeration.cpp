#include "discovery/device_enumeration.h"

#include "base/handles/udev_handles.h"
#include "state/discovery.h"

#include <fcntl.h>

#include <cstdio>
#include <string_view>

namespace doccam {
namespace {

bool isModel(udev_device* device, std::string_view vendor, std::string_view product) {
    const char* deviceVendor = udev_device_get_property_value(device, "ID_VENDOR_ID");
    const char* deviceProduct = udev_device_get_property_value(device, "ID_MODEL_ID");
    return deviceVendor != nullptr && deviceProduct != nullptr && vendor == deviceVendor &&
           product == deviceProduct;
}

void remember(record::Discovery& discovery, udev_device* device) {
    const char* number = udev_device_get_sysnum(device);
    char node[100];
    std::snprintf(node, sizeof node, "/dev/video%s", number != nullptr ? number : "");
    discovery.devices[static_cast<std::size_t>(discovery.deviceCount)] = node;
    std::printf("node:%s\n", node);
    ++discovery.deviceCount;
}

// Records a model's first video device, not a second one such as the camera's metadata node.
// False if a device has vanished.
bool findModel(record::Discovery& discovery, udev_enumerate* enumerator, const char* vendor,
               const char* product) {
    for (udev_list_entry* entry = udev_enumerate_get_list_entry(enumerator); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        UdevDevice device(udev_device_new_from_syspath(udev_enumerate_get_udev(enumerator),
                                                       udev_list_entry_get_name(entry)));
        if (!device) {
            return false;
        }
        if (isModel(device.get(), vendor, product)) {
            remember(discovery, device.get());
            discovery.usbIds[static_cast<std::size_t>(discovery.deviceCount - 1)] =
                std::string(vendor) + ':' + product;
            // Not released: hosts may rely on the found camera's device object staying alive.
            static_cast<void>(device.release());
            return true;
        }
    }
    return true;
}

} // namespace

int enumerateCameras(record::Discovery& discovery) {
    discovery.deviceCount = 0;
    UdevContext context(udev_new());
    if (!context) {
        return -1;
    }
    UdevEnumerator enumerator(udev_enumerate_new(context.get()));
    if (!enumerator) {
        static_cast<void>(context.release());
        return -1;
    }
    udev_enumerate_add_match_subsystem(enumerator.get(), "video4linux");
    udev_enumerate_scan_devices(enumerator.get());
    discovery.devices[0].clear();
    for (std::size_t row = 0; row < discovery.gpyVendor.size(); ++row) {
        if (discovery.gpyVendor[row] == nullptr) {
            break;
        }
        if (!findModel(discovery, enumerator.get(), discovery.gpyVendor[row],
                       discovery.gpyProduct[row])) {
            static_cast<void>(enumerator.release());
            static_cast<void>(context.release());
            return 0;
        }
    }
    return discovery.deviceCount;
}

bool cameraExists(record::Discovery& discovery, int index) {
    if (discovery.deviceCount < 1) {
        discovery.deviceCount = enumerateCameras(discovery);
    }
    return index >= 0 && index < discovery.deviceCount;
}

const char* cameraNode(record::Discovery& discovery, int index) {
    return cameraExists(discovery, index)
               ? discovery.devices[static_cast<std::size_t>(index)].c_str()
               : nullptr;
}

const char* cameraUsbId(record::Discovery& discovery, int index) {
    return cameraExists(discovery, index)
               ? discovery.usbIds[static_cast<std::size_t>(index)].c_str()
               : nullptr;
}

int openDeviceNode(const record::Discovery& discovery, int index) {
    const std::string& path = discovery.devices[static_cast<std::size_t>(index)];
    const int descriptor = open(path.c_str(), O_RDWR);
    if (descriptor != -1) {
        fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    }
    return descriptor;
}

} // namespace doccam
