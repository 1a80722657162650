// Counting what readers report.
#include "code_tally.h"

#include <gtest/gtest.h>

namespace doccam::test {

namespace {

PrintedCode printed(const std::string& text, const std::string& addon = {}) {
    return {{0, text, text}, {text, "(" + text + ")"}, addon};
}

CodePicture pictureOf(const std::vector<PrintedCode>& counted,
                      const std::vector<PrintedCode>& others = {}) {
    return {{}, counted, others};
}

CodeCell cellOf(ReaderTally zbar, ReaderTally zxing, ReaderTally ours) {
    return {10, {zbar, zxing, ours}};
}

} // namespace

TEST(CodeTally, CountsTheCodesOfTheKind) {
    const CodePicture picture = pictureOf({printed("one"), printed("two")}, {printed("other")});
    EXPECT_EQ(compare(picture, {{"one", ""}, {"(two)", ""}, {"other", ""}}),
              (ReaderTally{2, 0, 0}));
}

TEST(CodeTally, CountsTextsThatAreNotInThePictureAsWrong) {
    EXPECT_EQ(compare(pictureOf({printed("one")}), {{"on", ""}, {"one", ""}, {"", ""}}),
              (ReaderTally{1, 2, 0}));
}

TEST(CodeTally, CountsACodeReportedAgain) {
    EXPECT_EQ(compare(pictureOf({printed("one")}), {{"one", ""}, {"(one)", ""}}),
              (ReaderTally{1, 0, 1}));
}

TEST(CodeTally, WantsTheAddon) {
    const CodePicture picture = pictureOf({printed("4006381333931", "12")});
    EXPECT_EQ(compare(picture, {{"4006381333931", "12"}}), (ReaderTally{1, 0, 0}));
    EXPECT_EQ(compare(picture, {{"4006381333931", ""}}), (ReaderTally{0, 0, 0}));
    EXPECT_EQ(compare(picture, {{"4006381333931", "21"}}), (ReaderTally{0, 1, 0}));
    EXPECT_EQ(compare(picture, {{"12", ""}}), (ReaderTally{0, 1, 0}));
    EXPECT_EQ(compare(picture, {{"400638133393112", ""}}), (ReaderTally{0, 1, 0}));
}

TEST(CodeTally, IsContentWithTheBetterReadersCount) {
    EXPECT_EQ(complaint(cellOf({3, 2, 1}, {7, 0, 0}, {7, 0, 0})), "");
    EXPECT_EQ(complaint(cellOf({3, 0, 0}, {7, 0, 0}, {6, 0, 0})),
              "6 read, by zbar 3 and by ZXing 7");
    EXPECT_EQ(complaint(cellOf({8, 0, 0}, {7, 0, 0}, {9, 1, 2})), "1 wrong, 2 twice");
}

} // namespace doccam::test
