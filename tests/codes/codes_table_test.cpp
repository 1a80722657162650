// The tables of which codes are read.
#include "codes_table.h"

#include <gtest/gtest.h>

namespace doccam::test {

namespace {

// The same outcome for each picture.
std::vector<CodeMeasure> measuresOf(const std::vector<CodeTask>& tasks, const CodeCell& cell) {
    CodeMeasure measure;
    measure.cell = cell;
    return std::vector<CodeMeasure>(tasks.size(), measure);
}

} // namespace

TEST(CodesTable, HasARowForEachKindAndACellForEachSeries) {
    const auto tasks = codeTasks({"QR", "EAN-13"}, {"plain", "inverted", "desk"});
    const CodeCell cell{1, {ReaderTally{1, 0, 0}, ReaderTally{0, 1, 0}, ReaderTally{1, 0, 0}}};
    const CodesTable table(tasks, measuresOf(tasks, cell));
    EXPECT_EQ(table.text(false), "| kind | plain, of 10 | inverted, of 10 | wrong |\n"
                                 "|---|---|---|---|\n"
                                 "| QR | 10 / 0 / 10 | 10 / 0 / 10 | 0 / 20 / 0 |\n"
                                 "| EAN-13 | 10 / 0 / 10 | | 0 / 10 / 0 |\n");
    EXPECT_EQ(table.text(true), "| kind | desk, of 10 | wrong |\n"
                                "|---|---|---|\n"
                                "| QR | 10 / 0 / 10 | 0 / 10 / 0 |\n"
                                "| EAN-13 | 10 / 0 / 10 | 0 / 10 / 0 |\n");
    EXPECT_TRUE(table.failures().empty());
}

TEST(CodesTable, NamesTheCellsBelowTheBetterReader) {
    const auto tasks = codeTasks({"QR"}, {"plain", "small"});
    auto measures = measuresOf(tasks, {1, {ReaderTally{1, 0, 0}, {}, ReaderTally{1, 0, 0}}});
    measures.back().cell.readers[kDoccam].read = 0;
    const CodesTable table(tasks, measures);
    EXPECT_EQ(table.failures(),
              std::vector<std::string>{"QR, small: 9 read, by zbar 10 and by ZXing 0"});
}

} // namespace doccam::test
