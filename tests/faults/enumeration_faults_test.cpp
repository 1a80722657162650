// The requests by which a camera is looked at before it is opened fail.
#include "faults/documented_errors.h"
#include "faults/sweep_fixture.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <ostream>
#include <string>
#include <vector>

namespace doccam::test {
namespace {

constexpr int kNoSizes = -2;

// A call that fails, and how many sizes are known then in each format.
struct Look {
    const char* request;
    int at;
    std::vector<int> errors;
    int mjpegSizes;
    int yuyvSizes;

    int code() const { return mjpegSizes + yuyvSizes == 0 ? kNoSizes : 0; }

    int sizes(int format) const { return format == kMjpegFormat ? mjpegSizes : yuyvSizes; }
};

void PrintTo(const Look& look, std::ostream* out) {
    *out << look.request << " " << look.at;
}

class EnumerationFaults : public SweepTest, public testing::WithParamInterface<Look> {
  protected:
    // No size is known, as in a process that has just begun.
    static void forgetSizes() {
        resetLibrary();
        watchFrames();
    }

    void expectHealthyLibrary() {
        for (const int format : {kMjpegFormat, kYuyvFormat}) {
            forgetSizes();
            expectHealthySession(format);
            SetVideoFormat(format);
            EXPECT_EQ(getCameraResolutionCount(kIndexOfEarlier), 1);
        }
    }
};

TEST_P(EnumerationFaults, LeaveTheSizesFoundSoFarAndAHealthyLibrary) {
    int round = 0;
    for (const int error : GetParam().errors) {
        const CallFault fault{GetParam().request, error, GetParam().at};
        SCOPED_TRACE(described(fault));
        forgetSizes();
        const int format = round++ % 2;
        SetVideoFormat(format);
        inject(fault);
        EXPECT_EQ(getCameraResolutionCount(kIndexOfEarlier), GetParam().sizes(format));
        expectStruck(fault);
        expectHeld(0, 0);
        expectHealthyLibrary();
    }
}

TEST_P(EnumerationFaults, KeepACameraWithoutSizesFromOpening) {
    int round = 0;
    for (const int error : GetParam().errors) {
        const CallFault fault{GetParam().request, error, GetParam().at};
        SCOPED_TRACE(described(fault));
        forgetSizes();
        const int format = round++ % 2;
        inject(fault);
        ASSERT_EQ(openForOneFrame(format), GetParam().code());
        expectStruck(fault);
        if (GetParam().code() == 0) {
            expectTheFrameSent(format);
            EXPECT_EQ(closeCamera(), 0);
            virtualcam::resume(earlier_);
        }
        expectHeld(0, 0);
        expectHealthyLibrary();
    }
}

// The camera lists MJPEG before YUYV, one size each, and says after each list that it has ended.
INSTANTIATE_TEST_SUITE_P(EachRequest, EnumerationFaults,
                         testing::Values(Look{"open", 1, kOpenErrors, 0, 0},
                                         Look{"VIDIOC_QUERYCAP", 1, kGeneric, 1, 1},
                                         Look{"VIDIOC_ENUM_FMT", 1, kGeneric, 0, 0},
                                         Look{"VIDIOC_ENUM_FMT", 2, kGeneric, 1, 0},
                                         Look{"VIDIOC_ENUM_FMT", 3, kGeneric, 1, 1},
                                         Look{"VIDIOC_ENUM_FRAMESIZES", 1, kGeneric, 0, 1},
                                         Look{"VIDIOC_ENUM_FRAMESIZES", 2, kGeneric, 1, 1},
                                         Look{"VIDIOC_ENUM_FRAMESIZES", 3, kGeneric, 1, 0},
                                         Look{"VIDIOC_ENUM_FRAMESIZES", 4, kGeneric, 1, 1},
                                         Look{"close", 1, kCloseErrors, 1, 1}),
                         [](const auto& look) {
                             return shortName(look.param.request) + std::to_string(look.param.at);
                         });

class NameFaults : public SweepTest {};

TEST_F(NameFaults, OfANodeThatDoesNotOpenLeaveNoName) {
    for (const int error : kOpenErrors) {
        const CallFault fault{"open", error, 1};
        SCOPED_TRACE(described(fault));
        inject(fault);
        EXPECT_EQ(getCameraName(kIndexOfEarlier), nullptr);
        expectStruck(fault);
        expectHeld(0, 0);
        expectHealthySession(kMjpegFormat);
    }
}

TEST_F(NameFaults, OfTheQueryLeaveAnEmptyName) {
    for (const int error : kGeneric) {
        const CallFault fault{"VIDIOC_QUERYCAP", error, 1};
        SCOPED_TRACE(described(fault));
        inject(fault);
        EXPECT_STREQ(getCameraName(kIndexOfEarlier), "");
        expectStruck(fault);
        expectHeld(0, 0);
        expectHealthySession(kYuyvFormat);
    }
}

class NoCamera : public SweepTest {};

TEST_F(NoCamera, GivesItsCodeUntilOneIsPlugged) {
    bed_.unplug(earlier_);
    bed_.unplug(later_);
    EXPECT_EQ(open(kMjpegFormat), -1);
    expectHeld(0, 0);
    bed_.plug(earlier_);
    EXPECT_EQ(openCamera(kIndexOfEarlier + 1, kWidth, kHeight), -1);
    expectHealthySession(kMjpegFormat);
    expectHealthySession(kYuyvFormat);
}

} // namespace
} // namespace doccam::test
