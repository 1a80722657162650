#include "api/library_state.h"
#include "discovery/supported_models.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <string>

namespace doccam {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::string rows(int count) {
    std::string text;
    for (int row = 0; row < count; ++row) {
        text += "1d6b:010" + std::to_string(row) + "\n";
    }
    return text;
}

std::string written(const test::ScratchFolder& folder, const std::string& text) {
    const std::string path = folder.file("models.txt");
    std::ofstream(path) << text;
    return path;
}

TEST(SupportedModels, ReadsRowsInOrderAndPassesOverRemarksAndBlankLines) {
    const ParsedModels parsed =
        parseModels("# table\n\n 0c45:6366  # first\r\n05a3:9230#second\n\t\n");
    EXPECT_THAT(parsed.error, IsEmpty());
    ASSERT_THAT(parsed.models, SizeIs(2));
    EXPECT_STREQ(parsed.models[0].vendor.data(), "0c45");
    EXPECT_STREQ(parsed.models[0].product.data(), "6366");
    EXPECT_STREQ(parsed.models[1].vendor.data(), "05a3");
    EXPECT_STREQ(parsed.models[1].product.data(), "9230");
}

TEST(SupportedModels, ReadsALastRowWithoutALineEnd) {
    EXPECT_THAT(parseModels("1778:0210").models, SizeIs(1));
}

TEST(SupportedModels, TakesAnEmptyTableAsNoModels) {
    EXPECT_THAT(parseModels("").models, IsEmpty());
    EXPECT_THAT(parseModels("# none\n").error, IsEmpty());
}

TEST(SupportedModels, TakesNineRowsAndRefusesTheTenth) {
    EXPECT_THAT(parseModels(rows(9)).models, SizeIs(9));
    const ParsedModels parsed = parseModels(rows(10));
    EXPECT_THAT(parsed.models, IsEmpty());
    EXPECT_EQ(parsed.errorLine, 10);
    EXPECT_THAT(parsed.error, HasSubstr("more than nine rows"));
}

class MalformedRow : public testing::TestWithParam<const char*> {};

TEST_P(MalformedRow, IsRefusedWithItsLineNumber) {
    const ParsedModels parsed = parseModels(std::string("1778:0210\n") + GetParam() + "\n");
    EXPECT_THAT(parsed.models, IsEmpty());
    EXPECT_EQ(parsed.errorLine, 2);
    EXPECT_THAT(parsed.error, HasSubstr("expected vvvv:pppp"));
}

INSTANTIATE_TEST_SUITE_P(SupportedModels, MalformedRow,
                         testing::Values("1778", "1778:", ":0210", "1778:021", "1778:02100",
                                         "1778:021G", "1778:02AB", "1778 0210", "1778:0210 x",
                                         "1778:0210:0", "0x1778:0210"));

TEST(SupportedModels, NamesFileAndLineOfAMalformedRow) {
    const test::ScratchFolder folder;
    const std::string path = written(folder, "1778:0210\nnonsense\n");
    const ParsedModels parsed = readModels(path);
    EXPECT_THAT(parsed.models, IsEmpty());
    EXPECT_THAT(parsed.error, HasSubstr(path + ":2: "));
}

TEST(SupportedModels, NamesAFileThatIsMissingOrNoFile) {
    const test::ScratchFolder folder;
    EXPECT_THAT(readModels(folder.file("missing")).error, HasSubstr(folder.file("missing")));
    EXPECT_THAT(readModels(folder.path()).error, HasSubstr("not a readable file"));
}

TEST(SupportedModels, RefusesAFileTooLargeForATable) {
    const test::ScratchFolder folder;
    EXPECT_THAT(readModels(written(folder, std::string(65 * 1024, '#'))).error,
                HasSubstr("too large"));
}

TEST(SupportedModels, BuiltInTableIsTheConfiguredOneRowByRow) {
    const ParsedModels parsed = readModels(DOCCAM_MODELS_FILE);
    ASSERT_THAT(parsed.error, IsEmpty());
    ASSERT_THAT(parsed.models, SizeIs(9));
    for (std::size_t row = 0; row < parsed.models.size(); ++row) {
        EXPECT_STREQ(state().gpyVendor[row], parsed.models[row].vendor.data());
        EXPECT_STREQ(state().gpyProduct[row], parsed.models[row].product.data());
    }
}

} // namespace
} // namespace doccam
