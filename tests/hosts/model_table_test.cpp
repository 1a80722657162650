#include "doctor/model_table.h"
#include "host/failure.h"
#include "support/model_tables.h"
#include "support/refused_writing.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using namespace doccam::host;
using testing::AllOf;
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

std::vector<std::string> rowsOf(const std::string& text) {
    std::vector<std::string> rows;
    for (const doccam::ModelId& model : doccam::parseModels(text).models) {
        rows.push_back(textOf(model));
    }
    return rows;
}

TEST(ModelRows, AddsARowAtTheEnd) {
    EXPECT_EQ(withRow("0000:0001", "0000:0002"), "0000:0001\n0000:0002\n");
    EXPECT_EQ(withRow("", "0000:0002"), "0000:0002\n");
    EXPECT_EQ(withRow(kNineRows, "0000:000a"), std::nullopt);
}

TEST(ModelRows, RemovesTheLastRowByCommentingItOut) {
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

TEST_F(ModelTableFile, IsTheOneNamedByTheEnvironment) {
    std::ofstream(path_) << "1234:abcd\n";
    const ModelTable table = tableInForce();
    EXPECT_EQ(table.file, path_);
    EXPECT_EQ(table.addTo, path_);
    EXPECT_THAT(rowsOf(table.text), ElementsAre("1234:abcd"));
}

TEST_F(ModelTableFile, LeavesTheBuiltInTableInUseWhileItIsMalformed) {
    std::ofstream(path_) << "nonsense\n";
    const ModelTable table = tableInForce();
    EXPECT_THAT(table.error, HasSubstr("line 1"));
    EXPECT_THAT(rowsOf(table.text), Contains("0c45:6366"));
    EXPECT_THROW(addRow(table, "1234:abcd"), Failure);
    EXPECT_EQ(contentOf(path_), "nonsense\n");
}

TEST_F(ModelTableFile, IsMalformedWithATenthRow) {
    std::ofstream(path_) << doccam::test::modelRows(10);
    EXPECT_EQ(tableInForce().error, "line 10 is a tenth row");
}

TEST_F(ModelTableFile, IsReadUpToTheSizeThatTheLibraryReads) {
    const std::string largest(doccam::test::kLargestModelTable, '#');
    std::ofstream(path_) << largest;
    EXPECT_THAT(tableInForce().error, IsEmpty());
    EXPECT_EQ(tableInForce().text, largest);
    std::ofstream(path_) << largest << "#";
    EXPECT_THAT(tableInForce().error, HasSubstr("no readable table"));
}

TEST_F(ModelTableFile, MayBeEmpty) {
    const std::ofstream empty(path_);
    EXPECT_THAT(tableInForce().error, IsEmpty());
    EXPECT_THAT(tableInForce().text, IsEmpty());
}

TEST_F(ModelTableFile, NeedsRootWhereTheUserMayNotWrite) {
    fs::permissions(folder_.path(), fs::perms(0555));
    const ModelTable table = tableInForce();
    const doccam::test::OrdinaryUser user;
    try {
        addRow(table, "1234:abcd");
        FAIL() << "a row was added to a folder that may not be changed";
    } catch (const Failure& failure) {
        EXPECT_THAT(failure.what(), AllOf(HasSubstr(path_), HasSubstr("sudo")));
    }
}

TEST_F(ModelTableFile, GetsAnotherRow) {
    std::ofstream(path_) << "0000:0001\n";
    EXPECT_THAT(addRow(tableInForce(), "1234:abcd  # new"), IsEmpty());
    EXPECT_EQ(contentOf(path_), "0000:0001\n1234:abcd  # new\n");
}

TEST_F(ModelTableFile, IsMadeFromTheBuiltInTableWithoutItsLastRow) {
    const std::string last = rowsOf(tableInForce().text).back();
    EXPECT_EQ(addRow(tableInForce(), "1234:abcd"), last);
    const auto rows = rowsOf(contentOf(path_));
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
