// A silent camera is given up, a slow machine is waited for.
#include "camera/silence.h"

#include <gtest/gtest.h>

namespace {

using doccam::host::Silence;
using std::chrono::microseconds;
using std::chrono::milliseconds;

// How many looks, each with the same work of the process, are needed until the camera is given up.
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
