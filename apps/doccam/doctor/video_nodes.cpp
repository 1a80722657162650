#include "doctor/video_nodes.h"

#include <grp.h>
#include <libudev.h>
#include <sys/stat.h>

#include <cstring>
#include <memory>

namespace doccam::host {
namespace {

template <typename Handle, Handle* (*release)(Handle*)>
struct Release {
    void operator()(Handle* handle) const { release(handle); }
};

using Udev = std::unique_ptr<udev, Release<udev, udev_unref>>;
using Enumerator = std::unique_ptr<udev_enumerate, Release<udev_enumerate, udev_enumerate_unref>>;
using Device = std::unique_ptr<udev_device, Release<udev_device, udev_device_unref>>;

std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

std::string property(udev_device* device, const char* name) {
    return textOf(udev_device_get_property_value(device, name));
}

// Metadata nodes and codec nodes do not.
bool deliversPictures(udev_device* device) {
    return property(device, "ID_V4L_CAPABILITIES").find(":capture:") != std::string::npos;
}

std::string groupOf(const std::string& path) {
    struct stat status {};

    if (stat(path.c_str(), &status) != 0) {
        return "";
    }
    const group* entry = getgrgid(status.st_gid);
    return entry != nullptr ? entry->gr_name : "";
}

Node describe(udev_device* device) {
    Node node;
    node.path = textOf(udev_device_get_devnode(device));
    node.name = property(device, "ID_V4L_PRODUCT");
    node.vendor = property(device, "ID_VENDOR_ID");
    node.product = property(device, "ID_MODEL_ID");
    node.group = groupOf(node.path);
    return node;
}

} // namespace

std::optional<std::vector<Node>> videoNodes() {
    const Udev context(udev_new());
    const Enumerator enumerator(context ? udev_enumerate_new(context.get()) : nullptr);
    if (!enumerator || udev_enumerate_add_match_subsystem(enumerator.get(), "video4linux") < 0 ||
        udev_enumerate_scan_devices(enumerator.get()) < 0) {
        return std::nullopt;
    }
    std::vector<Node> nodes;
    for (udev_list_entry* entry = udev_enumerate_get_list_entry(enumerator.get()); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        const Device device(
            udev_device_new_from_syspath(context.get(), udev_list_entry_get_name(entry)));
        if (device && deliversPictures(device.get())) {
            nodes.push_back(describe(device.get()));
        }
    }
    return nodes;
}

} // namespace doccam::host
