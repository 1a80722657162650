#include "bed/udev_tree.h"

#include "bed/unseen_locks.h"

#include <umockdev.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace doccam::virtualcam {

namespace {

constexpr int kVideoMajor = 81;

std::string usbPath(int place) {
    return "/devices/pci0000:00/0000:00:14.0/usb1/1-" + std::to_string(place + 1);
}

std::string interfacePath(int place) {
    return usbPath(place) + "/1-" + std::to_string(place + 1) + ":1.0";
}

std::string nodePath(int place, int node) {
    return interfacePath(place) + "/video4linux/video" + std::to_string(node);
}

std::string identifiers(const CameraDescription& camera) {
    return "E: ID_VENDOR_ID=" + camera.vendor + "\nE: ID_MODEL_ID=" + camera.product +
           "\nE: ID_BUS=usb\n";
}

std::string describeUsbDevice(const CameraDescription& camera, int place) {
    std::ostringstream text;
    text << "P: " << usbPath(place) << "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n"
         << identifiers(camera) << "A: idVendor=" << camera.vendor
         << "\nA: idProduct=" << camera.product << "\n\nP: " << interfacePath(place)
         << "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\nE: DRIVER=uvcvideo\n"
         << "A: bInterfaceNumber=00\n\n";
    return text.str();
}

std::string describeNode(const CameraDescription& camera, int place, int node, bool metadata) {
    std::ostringstream text;
    text << "P: " << nodePath(place, node) << "\nE: SUBSYSTEM=video4linux\nE: DEVNAME=/dev/video"
         << node << "\nE: MAJOR=" << kVideoMajor << "\nE: MINOR=" << node << '\n'
         << identifiers(camera) << "E: ID_V4L_VERSION=2\nE: ID_V4L_PRODUCT=" << camera.card
         << "\nE: ID_V4L_CAPABILITIES=" << (metadata ? ":" : ":capture:")
         << "\nA: name=" << camera.card << "\nA: index=" << (metadata ? 1 : 0)
         << "\nA: dev=" << kVideoMajor << ':' << node << "\n\n";
    return text.str();
}

} // namespace

class UdevTree::Bed {
  public:
    Bed() {
        const UnseenLocks unseen;
        testbed_ = umockdev_testbed_new();
    }

    ~Bed() {
        const UnseenLocks unseen;
        g_object_unref(testbed_);
    }

    Bed(const Bed&) = delete;
    Bed& operator=(const Bed&) = delete;

    void add(const std::string& description) const {
        GError* error = nullptr;
        {
            const UnseenLocks unseen;
            umockdev_testbed_add_from_string(testbed_, description.c_str(), &error);
        }
        if (error != nullptr) {
            const std::string message = error->message;
            g_error_free(error);
            throw std::runtime_error("the device tree refuses a camera: " + message);
        }
    }

    void removePath(const std::string& path) const {
        const UnseenLocks unseen;
        umockdev_testbed_remove_device(testbed_, ("/sys" + path).c_str());
    }

    std::string folder() const {
        gchar* root = umockdev_testbed_get_root_dir(testbed_);
        std::string path = root;
        g_free(root);
        return path;
    }

  private:
    UMockdevTestbed* testbed_;
};

UdevTree::UdevTree()
  : bed_(std::make_unique<Bed>()) {}

UdevTree::~UdevTree() = default;

void UdevTree::add(const CameraDescription& description, int place, Nodes nodes, Order order) {
    bed_->add(describeUsbDevice(description, place));
    const std::string capture = describeNode(description, place, nodes.capture, false);
    const std::string metadata = describeNode(description, place, nodes.metadata, true);
    bed_->add(order == Order::kCaptureFirst ? capture : metadata);
    bed_->add(order == Order::kCaptureFirst ? metadata : capture);
    // umockdev presents a plain file in the tree's /dev as a character device.
    std::filesystem::create_directories(folder() + "/dev");
    for (const int node : {nodes.capture, nodes.metadata}) {
        std::ofstream(folder() + "/dev/video" + std::to_string(node));
    }
}

void UdevTree::remove(int place, Nodes nodes) {
    for (const int node : {nodes.metadata, nodes.capture}) {
        std::error_code ignored;
        std::filesystem::remove(folder() + "/dev/video" + std::to_string(node), ignored);
        bed_->removePath(nodePath(place, node));
    }
    bed_->removePath(interfacePath(place));
    bed_->removePath(usbPath(place));
}

std::string UdevTree::folder() const {
    return bed_->folder();
}

} // namespace doccam::virtualcam
