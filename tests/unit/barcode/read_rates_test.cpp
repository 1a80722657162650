#include "read_rates.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

namespace doccam::test {
namespace {

using testing::HasSubstr;

TEST(ReadRates, AreRowsOfFramesAndFiles) {
    EXPECT_EQ(toRow({"QR", {{10, 9}, {2, 0}}, 3}), "| QR | 10 / 9 | 2 / 0 | 3 |\n");
}

TEST(ReadRates, InTheManualAreThoseOfEveryKindAndDifficulty) {
    std::ifstream file(DOCCAM_CODE_READING_MANUAL);
    const std::string manual{std::istreambuf_iterator<char>(file), {}};
    EXPECT_THAT(manual, HasSubstr(heading()));
    for (const Kind& kind : kinds()) {
        EXPECT_THAT(manual, HasSubstr("\n| " + kind.name + " | "));
    }
    for (const Difficulty& difficulty : difficulties()) {
        EXPECT_THAT(manual, HasSubstr("\n- **" + difficulty.name + "**: "));
    }
}

} // namespace
} // namespace doccam::test
