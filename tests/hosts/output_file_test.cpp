#include "host/failure.h"
#include "host/output_file.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

namespace fs = std::filesystem;
using doccam::host::Failure;
using doccam::host::OutputFile;

class OutputFileTest : public testing::Test {
  protected:
    static void write(const std::string& path, const std::string& text) {
        std::ofstream(path) << text;
    }

    static std::string read(const std::string& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::ptrdiff_t entries() const {
        return std::distance(fs::directory_iterator(folder_.path()), {});
    }

    doccam::test::ScratchFolder folder_;
    std::string target_ = folder_.file("page.jpg");
};

TEST_F(OutputFileTest, AppearsWhenItIsPublished) {
    {
        OutputFile file(target_, false);
        write(file.draft(), "page");
        EXPECT_FALSE(fs::exists(target_));
        file.publish(file.draft());
    }
    EXPECT_EQ(read(target_), "page");
    EXPECT_EQ(entries(), 1);
}

TEST_F(OutputFileTest, LeavesNothingUnlessItIsPublished) {
    {
        const OutputFile file(target_, false);
        write(file.draft(), "half a page");
    }
    EXPECT_EQ(entries(), 0);
}

TEST_F(OutputFileTest, ReplacesNothingUnlessForced) {
    write(target_, "old");
    EXPECT_THROW(OutputFile(target_, false), Failure);
    OutputFile file(target_, true);
    write(file.draft(), "new");
    file.publish(file.draft());
    EXPECT_EQ(read(target_), "new");
}

TEST_F(OutputFileTest, ReplacesNothingThatAppearedMeanwhile) {
    OutputFile file(target_, false);
    write(file.draft(), "new");
    write(target_, "another's");
    EXPECT_THROW(file.publish(file.draft()), Failure);
    EXPECT_EQ(read(target_), "another's");
}

TEST_F(OutputFileTest, KeepsALinkAndReplacesItsTarget) {
    const std::string real = folder_.file("real.jpg");
    write(real, "old");
    fs::create_symlink(real, target_);
    {
        OutputFile file(target_, true);
        write(file.draft(), "new");
        file.publish(file.draft());
    }
    EXPECT_TRUE(fs::is_symlink(target_));
    EXPECT_EQ(read(real), "new");
}

TEST_F(OutputFileTest, KeepsThePermissionsOfWhatItReplaces) {
    write(target_, "old");
    fs::permissions(target_, fs::perms::owner_read | fs::perms::owner_write);
    OutputFile file(target_, true);
    write(file.draft(), "new");
    file.publish(file.draft());
    EXPECT_EQ(fs::status(target_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(OutputFileTest, NeverReplacesWhatIsNoRegularFile) {
    fs::create_directory(target_);
    EXPECT_THROW(OutputFile(target_, true), Failure);
    EXPECT_THROW(OutputFile("/dev/null", true), Failure);
    EXPECT_THROW(OutputFile(folder_.file(""), true), Failure);
}

TEST_F(OutputFileTest, NeedsAFolder) {
    EXPECT_THROW(OutputFile(folder_.file("missing/page.jpg"), false), Failure);
}

TEST_F(OutputFileTest, GivesItsDraftTheTargetsExtension) {
    const OutputFile file(target_, false);
    EXPECT_EQ(fs::path(file.draft()).extension(), ".jpg");
}

} // namespace
