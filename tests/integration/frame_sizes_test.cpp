#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/printed_text.h"

#include <doccam/doccam.h>

#include <gmock/gmock.h>

namespace doccam::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using virtualcam::FormatDescription;
using virtualcam::kMjpeg;
using virtualcam::kYuyv;

class FrameSizes : public SessionTest {
  protected:
    // Replaces both cameras with one that offers these formats.
    void offer(std::vector<FormatDescription> formats) {
        bed_.remove(earlier_);
        bed_.remove(later_);
        virtualcam::CameraDescription camera = fastCamera("1778", "0210");
        camera.formats = std::move(formats);
        bed_.add(camera);
    }

    static FormatDescription format(std::uint32_t pixelFormat,
                                    std::vector<virtualcam::Size> sizes) {
        FormatDescription description;
        description.pixelFormat = pixelFormat;
        description.sizes = std::move(sizes);
        return description;
    }

    static std::vector<std::pair<int, int>> listed() {
        std::vector<std::pair<int, int>> sizes;
        for (int i = 0; i < getFormatResolutionCount(0); ++i) {
            int width = 0;
            int height = 0;
            EXPECT_EQ(getCameraResolution(i, &width, &height), 0);
            sizes.emplace_back(width, height);
        }
        return sizes;
    }
};

TEST_F(FrameSizes, AppendTheEnlargedSizeWhenTheFullSizeIsTheLargest) {
    offer({format(kYuyv, {{640, 480}, {3264, 2448}})});
    EXPECT_EQ(getCameraResolutionCount(0), 3);
    EXPECT_THAT(listed(),
                ElementsAre(std::pair(640, 480), std::pair(3264, 2448), std::pair(3672, 2856)));
}

TEST_F(FrameSizes, AppendItOnceInRepeatedEnumerations) {
    offer({format(kYuyv, {{3264, 2448}})});
    EXPECT_EQ(getCameraResolutionCount(0), 2);
    EXPECT_EQ(getCameraResolutionCount(0), 2);
}

TEST_F(FrameSizes, AppendNothingWhenAnotherSizeIsHigher) {
    offer({format(kYuyv, {{3264, 2448}, {2592, 2592}})});
    EXPECT_EQ(getCameraResolutionCount(0), 2);
}

TEST_F(FrameSizes, TheFirstOfEqualHeightsDecides) {
    offer({format(kYuyv, {{3000, 2448}, {3264, 2448}})});
    EXPECT_EQ(getCameraResolutionCount(0), 2);
}

TEST_F(FrameSizes, KeepTheDriversOrderAndAreListedPerFormat) {
    offer({format(kMjpeg, {{1280, 960}, {640, 480}}), format(kYuyv, {{320, 240}}),
           format(virtualcam::fourcc("GREY"), {{160, 120}}),
           format(virtualcam::fourcc("NV12"), {{176, 144}})});
    PrintedText printed;
    EXPECT_EQ(getCameraResolutionCount(0), 1);
    EXPECT_THAT(printed.take(),
                EndsWith("width,height:1280,960\nwidth,height:640,480\nwidth,height:320,240\n"
                         "width,height:160,120\nwidth,height:176,144\n"));
    EXPECT_THAT(state().discovery.formatList, ElementsAre(0, 1, 2, 2));
    EXPECT_THAT(state().discovery.mjpegWidthList, ElementsAre(1280, 640));
    EXPECT_THAT(state().discovery.mjpegHeightList, ElementsAre(960, 480));
    EXPECT_THAT(state().discovery.otherfmtWidthList, ElementsAre(160, 176));
    EXPECT_THAT(state().discovery.otherfmtHeightList, ElementsAre(120, 144));
    SetVideoFormat(kMjpegFormat);
    EXPECT_THAT(listed(), ElementsAre(std::pair(1280, 960), std::pair(640, 480)));
}

TEST_F(FrameSizes, RangesAddNothing) {
    FormatDescription ranged = format(kYuyv, {});
    ranged.range = virtualcam::SizeRange{{160, 120}, {640, 480}, {16, 16}};
    offer({ranged});
    PrintedText printed;
    EXPECT_EQ(getCameraResolutionCount(0), 0);
    EXPECT_EQ(printed.take(), "node:/dev/video0\n");
    EXPECT_THAT(state().discovery.formatList, ElementsAre(1));
}

TEST_F(FrameSizes, OfACameraWithMjpegOnlyAreNoneForYuyv) {
    offer({format(kMjpeg, {{640, 480}})});
    EXPECT_EQ(getCameraResolutionCount(0), 0);
    int width = 7;
    int height = 8;
    EXPECT_EQ(getCameraResolution(0, &width, &height), -1);
    EXPECT_EQ(width, 7);
    EXPECT_EQ(height, 8);
    // The driver falls back to what it has: MJPEG.
    EXPECT_EQ(openCamera(0, 640, 480), 0);
    EXPECT_STREQ(state().session.pix_format, "MJPG");
}

TEST_F(FrameSizes, AreUnknownBeforeTheFirstEnumeration) {
    int width = 7;
    int height = 8;
    EXPECT_EQ(getCameraResolution(0, &width, &height), -2);
    EXPECT_EQ(getFormatResolutionCount(0), 0);
}

TEST_F(FrameSizes, PastTheListLeaveTheOutputsAndStillSucceed) {
    ASSERT_GT(getCameraResolutionCount(0), 0);
    int width = 7;
    int height = 8;
    EXPECT_EQ(getCameraResolution(99, &width, &height), 0);
    EXPECT_EQ(getCameraResolution(-1, &width, &height), 0);
    EXPECT_EQ(width, 7);
    EXPECT_EQ(height, 8);
    EXPECT_EQ(getCameraResolution(0, nullptr, &height), 0);
    EXPECT_EQ(height, 480);
}

TEST_F(FrameSizes, AreCountedWithoutLookingAtTheIndex) {
    getCameraResolutionCount(0);
    EXPECT_GT(getFormatResolutionCount(0), 0);
    EXPECT_EQ(getFormatResolutionCount(99), getFormatResolutionCount(0));
    EXPECT_EQ(getFormatResolutionCount(-1), getFormatResolutionCount(0));
}

TEST_F(FrameSizes, OfNoCameraAreNone) {
    EXPECT_EQ(getCameraResolutionCount(2), 0);
    EXPECT_EQ(getCameraResolutionCount(-1), 0);
    EXPECT_EQ(virtualcam::callCount("open"), 0);
}

TEST_F(FrameSizes, OfANodeThatCannotBeOpenedAreNone) {
    addCallFault("open", EACCES);
    ASSERT_EQ(getDeviceCount(), 2);
    PrintedText printed;
    EXPECT_EQ(getCameraResolutionCount(0), 0);
    EXPECT_EQ(printed.take(), "open camera error!!\n");
}

TEST_F(FrameSizes, EnumeratingStopsARunningSession) {
    openSmall(kMjpegFormat);
    PrintedText printed;
    EXPECT_GT(getCameraResolutionCount(0), 0);
    EXPECT_THAT(printed.take(),
                HasSubstr("---------getResolutionCount closeCamera BB---------\nwidth,height:"));
    EXPECT_FALSE(state().session.bKeep);
    EXPECT_EQ(virtualcam::openHandles(), 0);
    EXPECT_EQ(virtualcam::liveMappings(), 0);
}

TEST_F(FrameSizes, EnumeratingClosesANodeThatAFailedOpenLeftOpen) {
    addCallFault("VIDIOC_S_FMT", EBUSY);
    ASSERT_EQ(openCamera(0, 640, 480), -6);
    ASSERT_EQ(virtualcam::openHandles(), 1);
    PrintedText printed;
    EXPECT_GT(getCameraResolutionCount(0), 0);
    EXPECT_THAT(printed.take(),
                testing::StartsWith("---------getResolutionCount closeCamera AA---------\n"));
    EXPECT_EQ(virtualcam::openHandles(), 0);
    EXPECT_EQ(state().session.cam_fd.get(), -1);
}

TEST_F(FrameSizes, SurviveAClose) {
    openSmall(kMjpegFormat);
    closeCamera();
    EXPECT_THAT(listed(), testing::Not(IsEmpty()));
}

TEST_F(FrameSizes, EnumeratingForgetsTheEnlargedSizeOfTheSessionBefore) {
    ASSERT_EQ(openCamera(0, 3672, 2856), 0);
    EXPECT_TRUE(state().session.isInsert1000M);
    getCameraResolutionCount(0);
    EXPECT_FALSE(state().session.isInsert1000M);
}

} // namespace
} // namespace doccam::test
