// The minimum read rates, and how the table shows rates.
#include "read_rates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>

namespace doccam::test {
namespace {

// The number of samples of a difficulty that must be read.
struct Minimum {
    std::string kind, difficulty;
    int frames, files;
};

void PrintTo(const Minimum& minimum, std::ostream* out) {
    *out << minimum.kind << ", " << minimum.difficulty;
}

template <typename Item>
const Item& named(const std::string& name, const std::vector<Item>& items) {
    return *std::find_if(items.begin(), items.end(),
                         [&](const Item& item) { return item.name == name; });
}

class ReadRates : public testing::TestWithParam<Minimum> {};

TEST_P(ReadRates, ReachTheMinimumWithoutAWrongText) {
    const Minimum& minimum = GetParam();
    int wrong = 0;
    const Rate rate =
        measure(named(minimum.kind, kinds()), named(minimum.difficulty, difficulties()), wrong);
    EXPECT_GE(rate.frames, minimum.frames);
    EXPECT_GE(rate.files, minimum.files);
    EXPECT_EQ(wrong, 0);
}

INSTANTIATE_TEST_SUITE_P(Some, ReadRates,
                         testing::Values(Minimum{"QR, level M", "rotated", 10, 10},
                                         Minimum{"QR, level M", "small", 5, 2},
                                         Minimum{"QR, level M", "unevenly lit", 10, 10},
                                         Minimum{"Code 128", "small", 8, 9},
                                         Minimum{"UPC-A", "rotated", 10, 10}));

TEST(ReadRatesTable, HasRowsOfFramesAndFiles) {
    EXPECT_EQ(toRow({"QR", {{10, 9}, {2, 0}}, 3}), "| QR | 10 / 9 | 2 / 0 | 3 |\n");
}

} // namespace
} // namespace doccam::test
