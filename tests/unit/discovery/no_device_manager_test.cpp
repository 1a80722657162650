// Enumeration on a machine where libudev gives no context.
#include <doccam/doccam.h>

#include <gtest/gtest.h>
#include <libudev.h>

// Replaces libudev's.
udev* udev_new() {
    return nullptr;
}

namespace doccam::test {
namespace {

TEST(NoDeviceManager, HasItsOwnResult) {
    EXPECT_EQ(getDeviceCount(), DOCCAM_DEVICES_NO_UDEV);
    EXPECT_EQ(DOCCAM_DEVICES_NO_UDEV, -1);
    EXPECT_EQ(openCamera(0, 640, 480), DOCCAM_OPEN_NO_CAMERA);
}

} // namespace
} // namespace doccam::test
