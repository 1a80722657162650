// The helpers that hosts share with the library.
#include <doccam/doccam.hpp>

#include <gmock/gmock.h>

#include <chrono>

namespace doccam::test {
namespace {

using testing::ElementsAre;

TEST(Split, KeepsEmptyPieces) {
    EXPECT_THAT(split("a::b", ":"), ElementsAre("a", "", "b"));
    EXPECT_THAT(split("a:", ":"), ElementsAre("a", ""));
    EXPECT_THAT(split(":a", ":"), ElementsAre("", "a"));
}

TEST(Split, KeepsBlanks) {
    EXPECT_THAT(split("USB Camera: USB Camera", ":"), ElementsAre("USB Camera", " USB Camera"));
}

TEST(Split, ReturnsATextWithoutThePatternUnchanged) {
    EXPECT_THAT(split("USB Camera", ":"), ElementsAre("USB Camera"));
}

TEST(Split, ReturnsOneEmptyPieceForAnEmptyText) {
    EXPECT_THAT(split("", ":"), ElementsAre(""));
}

TEST(Split, SplitsAtPatternsOfSeveralCharacters) {
    EXPECT_THAT(split("a--b-c--", "--"), ElementsAre("a", "b-c", ""));
}

TEST(Split, FindsAPatternCutOffByTheEndOfTheText) {
    EXPECT_THAT(split("a:", "::"), ElementsAre("a"));
}

TEST(Split, ReturnsTheWholeTextForAnEmptyPattern) {
    EXPECT_THAT(split("abc", ""), ElementsAre("abc"));
}

TEST(SleepMilliseconds, WaitsTheWholeTime) {
    for (const int ms : {0, 3, 50, 550}) {
        const auto start = std::chrono::steady_clock::now();
        Sleep(ms);
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(ms));
    }
}

} // namespace
} // namespace doccam::test
