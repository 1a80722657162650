// Owning handles for libudev objects.
#pragma once

#include <libudev.h>

#include <memory>

namespace doccam {

struct UdevRelease {
    void operator()(udev* context) const { udev_unref(context); }

    void operator()(udev_enumerate* enumerator) const { udev_enumerate_unref(enumerator); }

    void operator()(udev_device* device) const { udev_device_unref(device); }
};

using UdevContext = std::unique_ptr<udev, UdevRelease>;
using UdevEnumerator = std::unique_ptr<udev_enumerate, UdevRelease>;
using UdevDevice = std::unique_ptr<udev_device, UdevRelease>;

} // namespace doccam
