#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/printed_text.h"

#include <doccam/doccam.h>

#include <gmock/gmock.h>

namespace doccam::test {
namespace {

class DeviceEnumeration : public SessionTest {};

TEST_F(DeviceEnumeration, FindsCamerasInTheOrderOfTheModelTable) {
    PrintedText printed;
    EXPECT_EQ(getDeviceCount(), 2);
    EXPECT_EQ(printed.take(), "node:/dev/video2\nnode:/dev/video0\n");
    EXPECT_EQ(state().discovery.devices[0], "/dev/video2");
    EXPECT_EQ(state().discovery.devices[1], "/dev/video0");
}

TEST_F(DeviceEnumeration, NamesNodeAndUsbIdOfEachCamera) {
    ASSERT_EQ(getDeviceCount(), 2);
    EXPECT_STREQ(doccam_camera_node(0), "/dev/video2");
    EXPECT_STREQ(doccam_camera_node(1), "/dev/video0");
    EXPECT_STREQ(doccam_camera_usb_id(1), "0c45:6366");
    for (const int none : {-1, 2}) {
        EXPECT_EQ(doccam_camera_node(none), nullptr);
        EXPECT_EQ(doccam_camera_usb_id(none), nullptr);
    }
    bed_.remove(earlier_);
    ASSERT_EQ(getDeviceCount(), 1);
    EXPECT_STREQ(doccam_camera_node(0), bed_.path(later_).c_str());
    EXPECT_EQ(doccam_camera_node(1), nullptr);
}

TEST_F(DeviceEnumeration, FindsOnlyTheFirstOfTwoCamerasOfOneModel) {
    bed_.remove(earlier_);
    bed_.add(fastCamera("0c45", "6366"));
    EXPECT_EQ(getDeviceCount(), 1);
    EXPECT_EQ(state().discovery.devices[0], bed_.path(later_));
}

TEST_F(DeviceEnumeration, PassesOverCamerasOfOtherModels) {
    bed_.remove(earlier_);
    bed_.remove(later_);
    bed_.add(fastCamera("ffff", "0001"));
    PrintedText printed;
    EXPECT_EQ(getDeviceCount(), 0);
    EXPECT_EQ(printed.take(), "");
}

TEST_F(DeviceEnumeration, NoticesPluggingOnlyWhenEnumerating) {
    ASSERT_NE(getCameraName(1), nullptr);
    bed_.unplug(later_);
    EXPECT_EQ(state().discovery.deviceCount, 2);
    EXPECT_EQ(getDeviceCount(), 1);
    bed_.plug(later_);
    EXPECT_EQ(getCameraName(1), nullptr);
    EXPECT_EQ(getDeviceCount(), 2);
    EXPECT_NE(getCameraName(1), nullptr);
}

TEST_F(DeviceEnumeration, NeverClearsMoreThanTheFirstOfItsPaths) {
    ASSERT_EQ(getDeviceCount(), 2);
    bed_.remove(earlier_);
    bed_.remove(later_);
    EXPECT_EQ(getDeviceCount(), 0);
    EXPECT_EQ(state().discovery.devices[0], "");
    EXPECT_EQ(state().discovery.devices[1], "/dev/video0");
}

TEST_F(DeviceEnumeration, UsesTheSecondPieceOfTheCardName) {
    ASSERT_EQ(getDeviceCount(), 2);
    EXPECT_STREQ(getCameraName(0), " Sheet Cam");
    EXPECT_STREQ(getCameraName(1), " Doc Cam");
    EXPECT_EQ(state().session.cam_fd.get(), -1);
    EXPECT_EQ(virtualcam::openHandles(), 0);
}

struct CardName {
    const char* card;
    const char* name;
};

class CardNames : public SessionTest, public testing::WithParamInterface<CardName> {};

TEST_P(CardNames, GiveTheDisplayName) {
    bed_.remove(earlier_);
    virtualcam::CameraDescription camera = fastCamera("1778", "0214");
    camera.card = GetParam().card;
    bed_.add(camera);
    ASSERT_EQ(getDeviceCount(), 2);
    EXPECT_STREQ(getCameraName(0), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(DeviceEnumeration, CardNames,
                         testing::Values(CardName{"Doc Cam:Front:HD", "Front"},
                                         CardName{"Plain Name", "Plain Name"},
                                         CardName{"Name:", ""}, CardName{":Name", "Name"}));

TEST_F(DeviceEnumeration, NamesNoCameraPastTheFoundOnes) {
    EXPECT_EQ(getCameraName(2), nullptr);
    EXPECT_EQ(getCameraName(-1), nullptr);
    EXPECT_EQ(virtualcam::callCount("open"), 0);
}

TEST_F(DeviceEnumeration, NamesNoCameraWhoseNodeCannotBeOpened) {
    addCallFault("open", EACCES);
    EXPECT_EQ(getCameraName(0), nullptr);
    EXPECT_EQ(state().session.cam_fd.get(), -1);
    EXPECT_STREQ(getCameraName(0), " Sheet Cam");
}

TEST_F(DeviceEnumeration, NamesACameraAlsoWhenTheCapabilityQueryFails) {
    addCallFault("VIDIOC_QUERYCAP", EIO);
    EXPECT_STREQ(getCameraName(0), "");
}

TEST_F(DeviceEnumeration, NamingClosesAStreamingSessionsDescriptor) {
    openSmall(kMjpegFormat);
    EXPECT_STREQ(getCameraName(1), " Doc Cam");
    EXPECT_EQ(state().session.cam_fd.get(), -1);
    EXPECT_TRUE(state().session.bKeep);
    EXPECT_EQ(virtualcam::openHandles(), 0);
}

TEST_F(DeviceEnumeration, ASessionThatLostItsDescriptorCanBeFollowedByAnother) {
    openSmall(kMjpegFormat);
    getCameraName(0);
    watchFrames();
    EXPECT_EQ(openCamera(0, 1280, 960), 0);
    waitForFrames(1);
    // The images were never released and keep their size.
    EXPECT_EQ(lastSeen().cols, 640);
}

} // namespace
} // namespace doccam::test
