// The parts of a capture node that are pure: formats, controls and the clock.
#include "device/controls.h"
#include "device/formats.h"
#include "device/frame_clock.h"

#include <gmock/gmock.h>

namespace {

using namespace doccam::virtualcam;
using testing::ElementsAre;

TEST(ControlBankTest, RefusesOutOfRangeValuesWhenStrict) {
    ControlBank bank(documentCameraControls(), true);
    v4l2_control record{V4L2_CID_CONTRAST, 65};
    EXPECT_EQ(bank.set(record), ERANGE);
    EXPECT_EQ(bank.value(V4L2_CID_CONTRAST), 32);
}

TEST(FormatOfferTest, OffersStepwiseSizesAndAdjustsToTheirGrid) {
    FormatDescription stepwise;
    stepwise.range = SizeRange{{160, 120}, {1280, 960}, {16, 8}};
    const FormatOffer offer({stepwise});
    v4l2_frmsizeenum sizes{};
    sizes.pixel_format = kMjpeg;
    ASSERT_EQ(offer.describeSize(sizes), 0);
    EXPECT_EQ(sizes.type, static_cast<std::uint32_t>(V4L2_FRMSIZE_TYPE_STEPWISE));
    EXPECT_EQ(sizes.stepwise.max_width, 1280U);
    sizes.index = 1;
    EXPECT_EQ(offer.describeSize(sizes), EINVAL);
    EXPECT_EQ(offer.nearest(kMjpeg, {650, 5000}).size, (Size{640, 960}));
}

TEST(FormatOfferTest, ListsDiscreteSizesInTheirOrder) {
    const FormatOffer offer(documentCameraFormats());
    std::vector<std::uint32_t> widths;
    v4l2_frmsizeenum sizes{};
    sizes.pixel_format = kYuyv;
    while (offer.describeSize(sizes) == 0) {
        widths.push_back(sizes.discrete.width);
        ++sizes.index;
    }
    EXPECT_THAT(widths, ElementsAre(640, 1280, 1600, 2048, 3264));
}

TEST(FormatOfferTest, ListsIntervalsOnlyOfOfferedSizes) {
    const FormatOffer offer(documentCameraFormats());
    v4l2_frmivalenum interval{};
    interval.pixel_format = kMjpeg;
    interval.width = 640;
    interval.height = 480;
    ASSERT_EQ(offer.describeInterval(interval), 0);
    EXPECT_EQ(interval.discrete.denominator, 30U);
    interval.width = 641;
    EXPECT_EQ(offer.describeInterval(interval), EINVAL);
}

TEST(FrameClockTest, MakesTheFirstFrameDueOneIntervalAfterTheStart) {
    FrameClock clock;
    const FrameClock::Time now{};
    clock.start(now, std::chrono::milliseconds(40));
    EXPECT_EQ(clock.due(), now + std::chrono::milliseconds(40));
    clock.advance(now + std::chrono::milliseconds(41));
    EXPECT_EQ(clock.due(), now + std::chrono::milliseconds(80));
    EXPECT_EQ(clock.number(), 1U);
}

TEST(FrameClockTest, SkipsFramesThatFoundNoBuffer) {
    FrameClock clock;
    const FrameClock::Time now{};
    clock.start(now, std::chrono::milliseconds(40));
    clock.skipMissed(now + std::chrono::milliseconds(40 + 200), 3);
    EXPECT_EQ(clock.number(), 2U);
}

} // namespace
