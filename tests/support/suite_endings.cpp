// Cases that end in every possible way, for suite_test.sh.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

namespace {

TEST(Ending, Passes) {}

TEST(Ending, IsSkipped) {
    GTEST_SKIP() << "for want of a reason";
}

TEST(Ending, Fails) {
    ADD_FAILURE();
}

TEST(Ending, Aborts) {
    std::abort();
}

TEST(Ending, LeavesWithSuccess) {
    _exit(EXIT_SUCCESS);
}

} // namespace
