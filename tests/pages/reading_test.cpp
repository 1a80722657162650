#include "reading.h"
#include "scene/pages/contents.h"

#include <gtest/gtest.h>

namespace doccam::test {

namespace {

using virtualcam::PrintedPage;
using virtualcam::RegionKind;

PrintedPage smallPage() {
    PrintedPage page;
    page.picture = cv::Mat(100, 100, CV_8UC3, cv::Scalar::all(255));
    page.words = {{"The", {0, 0, 9, 9}},
                  {"garden,", {10, 0, 9, 9}},
                  {"the", {20, 0, 9, 9}, true},
                  {"house.", {30, 0, 9, 9}}};
    page.regions = {{RegionKind::kPicture, {0, 50, 100, 50}}};
    return page;
}

ReadWord word(const char* text, int y = 0) {
    return {text, {40, y, 8, 8}};
}

TEST(CompareWords, CountsMissingAndInventedWords) {
    const Reading reading =
        compareWords(smallPage(), {word("The"), word("garden"), word("horse")}, {100, 100}, false);
    EXPECT_DOUBLE_EQ(reading.found, 0.5);
    EXPECT_EQ(reading.wrong, 1);
}

TEST(CompareWords, CountsEachPrintedWordOnce) {
    const Reading reading =
        compareWords(smallPage(), {word("house"), word("house")}, {100, 100}, false);
    EXPECT_DOUBLE_EQ(reading.found, 0.25);
    EXPECT_EQ(reading.wrong, 1);
}

TEST(CompareWords, LeavesMarkedWordsApart) {
    const std::vector<ReadWord> read{word("The"), word("garden"), word("house"), word("the")};
    const Reading reading = compareWords(smallPage(), read, {100, 100}, true);
    EXPECT_DOUBLE_EQ(reading.found, 1);
    EXPECT_EQ(reading.wrong, 0);
}

TEST(CompareWords, IgnoresWhatIsReadInPictures) {
    const Reading reading = compareWords(smallPage(), {word("xyzzy", 150)}, {200, 200}, false);
    EXPECT_EQ(reading.wrong, 0);
}

TEST(ReadWords, ReadsAFlatPage) {
    cv::RNG random(7);
    const PrintedPage page = virtualcam::printPalePrint(random);
    const Reading reading =
        compareWords(page, readWords(page.picture, 300), page.picture.size(), false);
    EXPECT_GE(reading.found, 0.99);
    EXPECT_LE(reading.wrong, 1);
}

} // namespace

} // namespace doccam::test
