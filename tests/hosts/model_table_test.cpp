#include "doctor/model_table.h"
#include "host/failure.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

using namespace doccam::host;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kNineRows = "0000:0001\n0000:0002\n0000:0003\n0000:0004\n0000:0005\n"
                                  "0000:0006\n0000:0007\n0000:0008\n0000:0009\n";

std::string contentOf(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

TEST(ModelRows, ReadsRowsAndPassesOverRemarks) {
    const ModelRows parsed = parseModelRows("# models\n\n 1234:abcd  # first\r\n0000:ffff");
    EXPECT_THAT(parsed.rows, ElementsAre("1234:abcd", "0000:ffff"));
    EXPECT_THAT(parsed.error, IsEmpty());
}

TEST(ModelRows, NamesTheLineThatIsNoRow) {
    for (const char* wrong : {"1234-abcd", "1234:ABCD", "123:abcd", "1234:abcde", "1234:abcd x"}) {
        const ModelRows parsed = parseModelRows(std::string("0000:0001\n") + wrong + "\n");
        EXPECT_THAT(parsed.rows, IsEmpty()) << wrong;
        EXPECT_THAT(parsed.error, HasSubstr("line 2")) << wrong;
    }
}

TEST(ModelRows, RefusesATenthRow) {
    EXPECT_THAT(parseModelRows(kNineRows).rows, SizeIs(9));
    EXPECT_THAT(parseModelRows(std::string(kNineRows) + "0000:000a").error, HasSubstr("tenth"));
}

TEST(ModelRows, AddsARowAtTheEnd) {
    EXPECT_EQ(withRow("0000:0001", "0000:0002"), "0000:0001\n0000:0002\n");
    EXPECT_EQ(withRow("", "0000:0002"), "0000:0002\n");
    EXPECT_EQ(withRow(kNineRows, "0000:000a"), std::nullopt);
}

TEST(ModelRows, TakesTheLastRowOutByMakingItARemark) {
    EXPECT_EQ(withoutLastRow("0000:0001\n0000:0002  # b\n# end\n"),
              "0000:0001\n# 0000:0002  # b\n# end\n");
    EXPECT_EQ(withoutLastRow("# none\n"), "# none\n");
}

class ModelTableFile : public testing::Test {
  protected:
    ModelTableFile() { setenv("DOCCAM_MODELS", path_.c_str(), 1); }

    ~ModelTableFile() override { unsetenv("DOCCAM_MODELS"); }

    doccam::test::ScratchFolder folder_;
    std::string path_ = folder_.file("models.txt");
};

TEST_F(ModelTableFile, IsTheOneThatTheEnvironmentNames) {
    std::ofstream(path_) << "1234:abcd\n";
    const ModelTable table = tableInForce();
    EXPECT_EQ(table.file, path_);
    EXPECT_EQ(table.addTo, path_);
    EXPECT_THAT(parseModelRows(table.text).rows, ElementsAre("1234:abcd"));
}

TEST_F(ModelTableFile, LeavesTheBuiltInTableInForceWhileItIsMalformed) {
    std::ofstream(path_) << "nonsense\n";
    const ModelTable table = tableInForce();
    EXPECT_THAT(table.error, HasSubstr("line 1"));
    EXPECT_THAT(parseModelRows(table.text).rows, Contains("0c45:6366"));
    EXPECT_THROW(addRow(table, "1234:abcd"), Failure);
    EXPECT_EQ(contentOf(path_), "nonsense\n");
}

TEST_F(ModelTableFile, GetsARowMore) {
    std::ofstream(path_) << "0000:0001\n";
    addRow(tableInForce(), "1234:abcd  # new");
    EXPECT_EQ(contentOf(path_), "0000:0001\n1234:abcd  # new\n");
}

TEST_F(ModelTableFile, IsMadeFromTheBuiltInTableWhoseLastRowMakesRoom) {
    addRow(tableInForce(), "1234:abcd");
    const auto rows = parseModelRows(contentOf(path_)).rows;
    EXPECT_THAT(rows, SizeIs(9));
    EXPECT_THAT(rows, Contains("0c45:6366"));
    EXPECT_EQ(rows.back(), "1234:abcd");
}

TEST_F(ModelTableFile, StaysAsItIsWhenItIsFull) {
    std::ofstream(path_) << kNineRows;
    EXPECT_THROW(addRow(tableInForce(), "1234:abcd"), Failure);
    EXPECT_EQ(contentOf(path_), kNineRows);
}

} // namespace
