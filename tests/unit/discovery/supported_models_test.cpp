#include "base/files/model_table.h"
#include "state/library_state.h"
#include "support/model_tables.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <string>
#include <vector>

namespace doccam {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::string written(const test::ScratchFolder& folder, const std::string& text) {
    const std::string path = folder.file("models.txt");
    std::ofstream(path) << text;
    return path;
}

std::vector<std::string> rowsOf(const ParsedModels& parsed) {
    std::vector<std::string> rows;
    for (const ModelId& model : parsed.models) {
        rows.push_back(textOf(model));
    }
    return rows;
}

TEST(SupportedModels, ReadsItsRowsInOrderUnlessALineIsMalformed) {
    for (const test::ModelTableCase& table : test::modelTables()) {
        const ParsedModels parsed = parseModels(table.text);
        EXPECT_EQ(rowsOf(parsed), table.rows) << table.text;
        EXPECT_EQ(parsed.errorLine, table.errorLine) << table.text;
        EXPECT_EQ(parsed.tooMany, table.errorLine == 10) << table.text;
        EXPECT_EQ(parsed.error.empty(), table.errorLine == 0) << table.text;
    }
}

TEST(SupportedModels, ReportsWhatIsWrongWithALine) {
    EXPECT_THAT(parseModels(test::modelRows(10)).error, HasSubstr("more than nine rows"));
    EXPECT_THAT(parseModels("1778").error, HasSubstr("expected vvvv:pppp"));
}

TEST(SupportedModels, NamesFileAndLineOfAMalformedRow) {
    const test::ScratchFolder folder;
    const std::string path = written(folder, "1778:0210\nnonsense\n");
    const ParsedModels parsed = readModels(path);
    EXPECT_THAT(parsed.models, IsEmpty());
    EXPECT_THAT(parsed.error, HasSubstr(path + ":2: "));
}

TEST(SupportedModels, NamesAFileThatIsMissingOrNotRegular) {
    const test::ScratchFolder folder;
    EXPECT_THAT(readModels(folder.file("missing")).error, HasSubstr(folder.file("missing")));
    EXPECT_THAT(readModels(folder.path()).error, HasSubstr("not a readable file"));
}

TEST(SupportedModels, RefusesAFileTooLargeForATable) {
    const test::ScratchFolder folder;
    const std::string largest(test::kLargestModelTable, '#');
    EXPECT_THAT(readModels(written(folder, largest)).error, IsEmpty());
    EXPECT_THAT(readModels(written(folder, largest + "#")).error, HasSubstr("too large"));
}

TEST(SupportedModels, BuiltInTableIsTheConfiguredOneRowByRow) {
    const ParsedModels parsed = readModels(DOCCAM_MODELS_FILE);
    ASSERT_THAT(parsed.error, IsEmpty());
    ASSERT_THAT(parsed.models, SizeIs(9));
    for (std::size_t row = 0; row < parsed.models.size(); ++row) {
        EXPECT_STREQ(state().discovery.gpyVendor[row], parsed.models[row].vendor.data());
        EXPECT_STREQ(state().discovery.gpyProduct[row], parsed.models[row].product.data());
    }
}

} // namespace
} // namespace doccam
