// Giving up on a silent camera, but not on a slow machine.
#include "camera/camera_session.h"

#include <gtest/gtest.h>

namespace {

using doccam::host::Silence;
using std::chrono::microseconds;
using std::chrono::milliseconds;

// The number of looks, each with the same work by the process, until the camera is given up.
int looksUntilGivenUp(microseconds workInALook) {
    Silence silence;
    microseconds used = Silence::processorTime();
    int looks = 0;
    do {
        used += workInALook;
        ++looks;
    } while (!silence.outlasts(used));
    return looks;
}

TEST(Silence, EndsSoonWhileTheProcessIsIdle) {
    EXPECT_EQ(looksUntilGivenUp(microseconds(100)), Silence::kIdleLooks);
}

TEST(Silence, LastsLongWhileTheProcessWorks) {
    EXPECT_EQ(looksUntilGivenUp(milliseconds(10)), Silence::kLooks);
    EXPECT_GE(Silence::kLooks * Silence::kLook, std::chrono::minutes(2));
}

TEST(Silence, CountsIdleLooksBetweenBusyOnes) {
    Silence silence;
    microseconds used = Silence::processorTime();
    for (int look = 1; look < Silence::kIdleLooks; ++look) {
        ASSERT_FALSE(silence.outlasts(used += milliseconds(10)));
        ASSERT_FALSE(silence.outlasts(used));
    }
    ASSERT_FALSE(silence.outlasts(used += milliseconds(10)));
    EXPECT_TRUE(silence.outlasts(used));
}

} // namespace
