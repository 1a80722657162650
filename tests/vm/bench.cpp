#include "vm/bench.h"

#include <fcntl.h>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <sys/utsname.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>

namespace doccam::vm {
namespace {

using virtualcam::CameraDescription;
using virtualcam::FormatDescription;
using virtualcam::Size;

FormatDescription format(std::uint32_t pixelFormat, std::vector<Size> sizes) {
    FormatDescription out;
    out.pixelFormat = pixelFormat;
    out.sizes = std::move(sizes);
    out.frameRates = {15, 5};
    return out;
}

CameraDescription docCam() {
    CameraDescription camera = virtualcam::documentCamera("1d6b", "0102");
    camera.card = "Doc Cam";
    camera.formats = {
        format(virtualcam::kMjpeg, {{640, 480}, {1280, 960}, {1600, 1200}, {3264, 2448}}),
        format(virtualcam::kYuyv, {{640, 480}, {1280, 960}, {1600, 1200}})};
    return camera;
}

CameraDescription sheetCam() {
    CameraDescription camera = virtualcam::documentCamera("1d6b", "0105");
    camera.card = "Sheet Cam";
    camera.formats = {format(virtualcam::kYuyv, {{640, 480}}),
                      format(virtualcam::kMjpeg, {{640, 480}, {1024, 768}})};
    camera.scene.angle = -9;
    camera.scene.qrText = "sheet under the second camera";
    camera.scene.code128Text = "SECOND-2";
    for (auto& control : camera.controls) {
        if (control.id == V4L2_CID_BRIGHTNESS) {
            control.minimum = 1;
            control.maximum = 255;
            control.defaultValue = 128;
        }
    }
    return camera;
}

std::string firstLine(const std::filesystem::path& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

void printNode(const std::filesystem::path& device) {
    const std::string node = "/dev/" + device.filename().string();
    const UniqueFd descriptor(open(node.c_str(), O_RDWR | O_CLOEXEC));
    v4l2_capability capability{};
    ioctl(descriptor.get(), VIDIOC_QUERYCAP, &capability);
    const auto usb = std::filesystem::canonical(device / "device").parent_path();
    std::printf("guest: %s: %s, driver %s %u.%u.%u, USB %s:%s\n", node.c_str(),
                reinterpret_cast<const char*>(capability.card),
                reinterpret_cast<const char*>(capability.driver), capability.version >> 16,
                capability.version >> 8 & 0xff, capability.version & 0xff,
                firstLine(usb / "idVendor").c_str(), firstLine(usb / "idProduct").c_str());
}

} // namespace

Bench::Bench()
  : earlier_(docCam())
  , later_(sheetCam()) {
    plugIn(later_);
    plugIn(earlier_);
}

void Bench::plugIn(BenchCamera& camera) {
    camera.usb.plugIn();
    events_.waitFor("add", 2);
}

void Bench::unplug(BenchCamera& camera) {
    camera.usb.unplug();
    events_.waitFor("remove", 2);
}

void Bench::printGuest() {
    utsname kernel{};
    uname(&kernel);
    std::printf("guest: %s %s %s\n", kernel.sysname, kernel.release, kernel.version);
    std::set<std::filesystem::path> devices;
    for (const auto& entry : std::filesystem::directory_iterator("/sys/class/video4linux")) {
        devices.insert(entry.path());
    }
    for (const auto& device : devices) {
        if (firstLine(device / "index") == "0") {
            printNode(device);
        }
    }
}

int openVideoNodes() {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const auto target = std::filesystem::read_symlink(entry.path(), gone).string();
        count += target.starts_with("/dev/video") ? 1 : 0;
    }
    return count;
}

} // namespace doccam::vm
