// The virtual cameras as real libudev sees them.
#include "support/camera_fixture.h"

#include <gmock/gmock.h>
#include <libudev.h>
#include <sys/stat.h>

#include <memory>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VirtualCameraUdev : public doccam::test::BareCameraTest {
  protected:
    struct Node {
        std::string path;
        std::string number;
        std::string identifiers;
        std::string name;
        std::string index;
    };

    static std::string text(const char* value) { return value == nullptr ? "(none)" : value; }

    static std::vector<Node> enumerate() {
        const std::unique_ptr<udev, decltype(&udev_unref)> context(udev_new(), udev_unref);
        const std::unique_ptr<udev_enumerate, decltype(&udev_enumerate_unref)> list(
            udev_enumerate_new(context.get()), udev_enumerate_unref);
        udev_enumerate_add_match_subsystem(list.get(), "video4linux");
        udev_enumerate_scan_devices(list.get());
        std::vector<Node> nodes;
        for (udev_list_entry* entry = udev_enumerate_get_list_entry(list.get()); entry != nullptr;
             entry = udev_list_entry_get_next(entry)) {
            const std::unique_ptr<udev_device, decltype(&udev_device_unref)> device(
                udev_device_new_from_syspath(context.get(), udev_list_entry_get_name(entry)),
                udev_device_unref);
            nodes.push_back({text(udev_device_get_devnode(device.get())),
                             text(udev_device_get_sysnum(device.get())),
                             text(udev_device_get_property_value(device.get(), "ID_VENDOR_ID")) +
                                 ":" +
                                 text(udev_device_get_property_value(device.get(), "ID_MODEL_ID")),
                             text(udev_device_get_sysattr_value(device.get(), "name")),
                             text(udev_device_get_sysattr_value(device.get(), "index"))});
        }
        return nodes;
    }

    static std::vector<std::string> paths() {
        std::vector<std::string> all;
        for (const Node& node : enumerate()) {
            all.push_back(node.path + " " + node.index);
        }
        return all;
    }
};

TEST_F(VirtualCameraUdev, ListsNothingWithoutCameras) {
    EXPECT_THAT(enumerate(), IsEmpty());
}

TEST_F(VirtualCameraUdev, ListsACaptureAndAMetadataNodePerCamera) {
    bed_.add(fastCamera("0c45", "6366"));
    bed_.add(fastCamera("1778", "0210"));
    EXPECT_THAT(paths(),
                ElementsAre("/dev/video0 0", "/dev/video1 1", "/dev/video2 0", "/dev/video3 1"));
}

TEST_F(VirtualCameraUdev, ShowsTheSameIdentifiersOnBothNodes) {
    bed_.add(fastCamera("05a3", "9230"));
    const std::vector<Node> nodes = enumerate();
    ASSERT_EQ(nodes.size(), 2U);
    EXPECT_EQ(nodes[0].identifiers, "05a3:9230");
    EXPECT_EQ(nodes[1].identifiers, "05a3:9230");
    EXPECT_EQ(nodes[0].number, "0");
    EXPECT_EQ(nodes[1].number, "1");
    EXPECT_EQ(nodes[0].name, "Doc Cam: Doc Cam");
}

TEST_F(VirtualCameraUdev, ShowsNodesAsCharacterDevices) {
    bed_.add(fastCamera());

    struct stat status {};

    ASSERT_EQ(stat("/dev/video1", &status), 0);
    EXPECT_TRUE(S_ISCHR(status.st_mode));
}

TEST_F(VirtualCameraUdev, ForgetsAnUnpluggedCamera) {
    const auto first = bed_.add(fastCamera());
    bed_.add(fastCamera());
    bed_.unplug(first);
    EXPECT_THAT(paths(), ElementsAre("/dev/video2 0", "/dev/video3 1"));
    EXPECT_EQ(bed_.path(first), "");
}

TEST_F(VirtualCameraUdev, ReusesTheNumbersOnReplugWhenNothingHoldsTheNode) {
    const auto camera = bed_.add(fastCamera());
    bed_.unplug(camera);
    bed_.plug(camera);
    EXPECT_THAT(paths(), ElementsAre("/dev/video0 0", "/dev/video1 1"));
}

} // namespace
