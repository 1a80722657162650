// Exceptions that become results where C calls.
#include "base/guarded.h"
#include "support/printed_text.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace doccam::test {
namespace {

TEST(Guarded, ReturnsWhatTheActionReturns) {
    EXPECT_EQ(guarded("shoot", -1, [] { return 7; }), 7);
}

TEST(Guarded, TurnsAnExceptionIntoOneLineAndTheFailureResult) {
    PrintedText printed(PrintedText::Stream::kError);
    EXPECT_EQ(guarded("shoot", -1, []() -> int { throw std::runtime_error("no film"); }), -1);
    EXPECT_EQ(printed.take(), "doccam: shoot: no film\n");
}

TEST(Guarded, TurnsAnyThrownValueIntoTheFailureResult) {
    PrintedText printed(PrintedText::Stream::kError);
    EXPECT_EQ(guarded("shoot", -1, []() -> int { throw 3; }), -1);
    EXPECT_EQ(printed.take(), "doccam: shoot: unknown error\n");
}

} // namespace
} // namespace doccam::test
