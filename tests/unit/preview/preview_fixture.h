// A fresh preview for each test, and its fields as the rules name them.
#pragma once

#include "base/frame_size.h"
#include "state/library_state.h"

#include <gmock/gmock.h>

#include <iosfwd>
#include <limits>

namespace doccam::test {

constexpr int kHuge = std::numeric_limits<int>::max();
constexpr int kLowest = std::numeric_limits<int>::min();

// Every value that the preview's operations change.
struct PreviewFields {
    int FormWidth = 0, FormHeight = 0;
    int FormStartX = 0, FormStartY = 0;
    int ShowWidth = 0, ShowHeight = 0;
    int ZoomWidth = 0, ZoomHeight = 0;
    int ZoomStartX = 0, ZoomStartY = 0;
    int VideoOffsetX = 0, VideoOffsetY = 0;
    double pZoomScale = 50.0, pBestScale = 50.0;
    int RotateAngle = 0, RotateFlag = 0;

    bool operator==(const PreviewFields&) const = default;
};

std::ostream& operator<<(std::ostream& out, const PreviewFields& fields);

PreviewFields currentFields();

class Preview : public testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    // As after opening a camera with frames of this size.
    static void stream(FrameSize frame);

    // 1000 x 750 in a form of 800 x 600: fits at 80 %, overflows by 200 x 150 at 100 %.
    static void streamLargeFrame();

    // 402 x 302 in the same form: fits at 100 %, with 398 x 298 to spare.
    static void streamSmallFrame();

    // Sets the fields of a view directly, for states that no operation leads to.
    static void setFields(const PreviewFields& fields);
};

} // namespace doccam::test
