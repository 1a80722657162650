// The pictures of codes: different texts, the same picture for the same seed.
#include "code_readers.h"
#include "code_series.h"
#include "code_sheet.h"
#include "code_tally.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <ostream>

namespace doccam::test {

namespace {

const CodeKind& kindNamed(const std::string& name) {
    return *std::find_if(codeKinds().begin(), codeKinds().end(),
                         [&](const CodeKind& kind) { return kind.name == name; });
}

const CodeSeries& seriesNamed(const std::string& name) {
    return *std::find_if(codeSeries().begin(), codeSeries().end(),
                         [&](const CodeSeries& series) { return series.name == name; });
}

bool isEqual(const cv::Mat& a, const cv::Mat& b) {
    return a.size() == b.size() && cv::norm(a, b, cv::NORM_INF) == 0;
}

} // namespace

TEST(CodePictures, AreTheSameForTheSameSeed) {
    const CodeKind& kind = kindNamed("QR");
    const CodeSeries& series = seriesNamed("plain");
    const CodePicture first = drawCodePicture(kind, series, 3, 7);
    EXPECT_TRUE(isEqual(first.grey, drawCodePicture(kind, series, 3, 7).grey));
    const CodePicture other = drawCodePicture(kind, series, 3, 8);
    EXPECT_NE(first.counted.front().texts, other.counted.front().texts);
    EXPECT_NE(first.counted.front().texts,
              drawCodePicture(kind, series, 4, 7).counted.front().texts);
}

TEST(CodePictures, HaveUpToNineCodes) {
    const CodePicture same =
        drawCodePicture(kindNamed("Code 128"), seriesNamed("several of the kind"), 3, 1);
    EXPECT_EQ(same.counted.size(), 9U);
    EXPECT_TRUE(same.others.empty());
    const CodePicture mixed =
        drawCodePicture(kindNamed("Code 128"), seriesNamed("several kinds"), 3, 1);
    EXPECT_EQ(mixed.counted.size(), 5U);
    EXPECT_EQ(mixed.others.size(), 4U);
}

TEST(CodeSheets, KeepTheShapeAskedFor) {
    cv::RNG random(1);
    const std::vector<PrintedCode> codes(4, kindNamed("QR").make(random));
    const CodeSheet square = printSheet(codes, {.aspect = 1}, random);
    EXPECT_EQ(square.codes.width, square.codes.height);
    const CodeSheet wide = printSheet(codes, {.aspect = 4}, random);
    EXPECT_EQ(wide.codes.width, 4 * wide.codes.height);
}

void PrintTo(const CodeKind& kind, std::ostream* out) {
    *out << kind.name;
}

class KindsOfCodes : public testing::TestWithParam<CodeKind> {};

// A kind that no reader reads has no place in the table.
TEST_P(KindsOfCodes, AreReadByOneReaderAtLeast) {
    int read = 0;
    for (const char* name : {"plain", "small"}) {
        const CodeSeries& series = seriesNamed(name);
        for (int sample = 0; sample < series.samples && read == 0; ++sample) {
            const CodePicture picture = drawCodePicture(GetParam(), series, sample, 1);
            read = compare(picture, readByZbar(picture.grey)).read +
                   compare(picture, readByZxing(picture.grey)).read;
        }
    }
    EXPECT_GE(read, 1);
}

INSTANTIATE_TEST_SUITE_P(All, KindsOfCodes, testing::ValuesIn(codeKinds()), [](const auto& kind) {
    std::string name = kind.param.name;
    std::erase_if(name, [](unsigned char letter) { return std::isalnum(letter) == 0; });
    return name;
});

} // namespace doccam::test
