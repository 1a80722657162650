// Failures of the requests that examine a camera before it is opened.
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

// A failing call, and how many sizes are then known in each format.
struct FailingCall {
    const char* request;
    int at;
    std::vector<int> errors;
    int mjpegSizes;
    int yuyvSizes;

    int code() const { return mjpegSizes + yuyvSizes == 0 ? kNoSizes : 0; }

    int sizes(int format) const { return format == kMjpegFormat ? mjpegSizes : yuyvSizes; }
};

void PrintTo(const FailingCall& failing, std::ostream* out) {
    *out << failing.request << " " << failing.at;
}

class EnumerationFaults : public SweepTest, public testing::WithParamInterface<FailingCall> {
  protected:
    // Back to no known sizes, as in a fresh process.
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

// The camera lists MJPEG before YUYV, one size each, and ends each list with an error.
INSTANTIATE_TEST_SUITE_P(EachRequest, EnumerationFaults,
                         testing::Values(FailingCall{"open", 1, kOpenErrors, 0, 0},
                                         FailingCall{"VIDIOC_QUERYCAP", 1, kGeneric, 1, 1},
                                         FailingCall{"VIDIOC_ENUM_FMT", 1, kGeneric, 0, 0},
                                         FailingCall{"VIDIOC_ENUM_FMT", 2, kGeneric, 1, 0},
                                         FailingCall{"VIDIOC_ENUM_FMT", 3, kGeneric, 1, 1},
                                         FailingCall{"VIDIOC_ENUM_FRAMESIZES", 1, kGeneric, 0, 1},
                                         FailingCall{"VIDIOC_ENUM_FRAMESIZES", 2, kGeneric, 1, 1},
                                         FailingCall{"VIDIOC_ENUM_FRAMESIZES", 3, kGeneric, 1, 0},
                                         FailingCall{"VIDIOC_ENUM_FRAMESIZES", 4, kGeneric, 1, 1},
                                         FailingCall{"close", 1, kCloseErrors, 1, 1}),
                         [](const auto& failing) {
                             return shortName(failing.param.request) +
                                    std::to_string(failing.param.at);
                         });

class NameFaults : public SweepTest {};

TEST_F(NameFaults, OfOpeningTheNodeLeaveNoName) {
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

TEST_F(NoCamera, IsReportedUntilOneIsPluggedIn) {
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
