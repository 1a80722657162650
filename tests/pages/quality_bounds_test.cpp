#include "quality_bounds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace doccam::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

FrameMeasures frameWith(const std::string& kind, double overlap) {
    SheetMeasures sheet;
    sheet.kind = kind;
    sheet.overlap = overlap;
    return {"frame", {sheet}, 0};
}

TEST(QualityBounds, HoldForGoodFrames) {
    const std::vector<FrameMeasures> letters{frameWith("a4", 0.995), frameWith("a4", 0.986)};
    EXPECT_THAT(frameFailures("a4", letters), IsEmpty());
    EXPECT_THAT(meanFailures("a4", letters), IsEmpty());
    EXPECT_THAT(frameFailures("receipt", {frameWith("receipt", 0.971)}), IsEmpty());
}

TEST(QualityBounds, NameEachFrameBelowItsOverlap) {
    EXPECT_THAT(frameFailures("a4", {frameWith("a4", 0.999), frameWith("a4", 0.984)}),
                ElementsAre(StartsWith("overlap of frame (a4)")));
    EXPECT_THAT(frameFailures("card", {frameWith("card", 0.969)}), SizeIs(1));
    EXPECT_THAT(overallFailures({frameWith("card", 0.98)}), SizeIs(1));
}

TEST(QualityBounds, AllowNoSheetOnAnEmptyDesk) {
    EXPECT_THAT(frameFailures("empty", {{"empty-3", {}, 0}}), IsEmpty());
    EXPECT_THAT(frameFailures("empty", {{"empty-3", {}, 1}}),
                ElementsAre(StartsWith("sheets found on the empty desk empty-3")));
}

TEST(QualityBounds, AreThoseOfEachMeasure) {
    FrameMeasures frame = frameWith("a4", 1);
    SheetMeasures& sheet = frame.sheets.front();
    sheet.proportions = 0.011;
    sheet.readings = Readings{Reading{0.994, 0}, Reading{1, 2}, Reading{1, 1}};
    sheet.fills = {1, 6.1};
    sheet.pictures = {0.021};
    EXPECT_THAT(frameFailures("fills", {frame}),
                ElementsAre(StartsWith("proportions"), StartsWith("delta E"), StartsWith("SSIM")));
    EXPECT_THAT(meanFailures("fills", {frame}),
                ElementsAre(StartsWith("words of fills in colour"),
                            StartsWith("wrong words of fills in grey")));
    EXPECT_THAT(meanFailures("a4", {frameWith("a4", 0.989)}),
                ElementsAre(StartsWith("mean overlap of a4")));
}

TEST(QualityBounds, AreStricterForTheMeanOfPhotographs) {
    EXPECT_THAT(photographFailures({{"a", 0.966}, {"b", 0.999}, {"c", 0.999}}), IsEmpty());
    EXPECT_THAT(photographFailures({{"a", 0.964}, {"b", 0.97}}), SizeIs(2));
}

} // namespace

} // namespace doccam::test
