// Files that appear complete or not at all.
#include "decoded.h"
#include "output/files/staged_file.h"
#include "support/refused_writing.h"
#include "support/scratch_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using doccam::StagedFile;
using namespace doccam::test;

unsigned modeOf(const std::string& path) {
    struct stat status {};

    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

class StagedFileTest : public testing::Test {
  protected:
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(scratch_.path())) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    void replace(const std::string& target, const std::string& text) {
        StagedFile file(target);
        writeText(file.path(), text);
        EXPECT_TRUE(file.commit());
    }

    // Lets the ordinary user into the scratch folder.
    void share(unsigned mode) { fs::permissions(scratch_.path(), fs::perms{mode}); }

    ScratchFolder scratch_;
    std::string target_ = scratch_.file("a.jpg");
};

using Names = std::vector<std::string>;

TEST_F(StagedFileTest, RefusesLinksInACircle) {
    const std::string other = scratch_.file("b.jpg");
    fs::create_symlink(other, target_);
    fs::create_symlink(target_, other);
    {
        const StagedFile file(target_);
        EXPECT_EQ(file.path(), target_);
        EXPECT_FALSE(std::ofstream(file.path()).is_open());
    }
    EXPECT_TRUE(fs::is_symlink(target_));
    EXPECT_TRUE(fs::is_symlink(other));
    EXPECT_EQ(files(), (Names{"a.jpg", "b.jpg"}));
}

TEST_F(StagedFileTest, AppearsOnlyWhenCommitted) {
    StagedFile file(target_);
    writeText(file.path(), "new");
    EXPECT_FALSE(fs::exists(target_));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(readText(target_), "new");
    EXPECT_EQ(files(), Names{"a.jpg"});
}

TEST_F(StagedFileTest, LeavesNothingWithoutACommit) {
    {
        StagedFile file(target_);
        writeText(file.path(), "half");
    }
    EXPECT_EQ(files(), Names{});
}

TEST_F(StagedFileTest, IsLockedUntilItIsCommitted) {
    const StagedFile file(target_);
    const int other = open(file.path().c_str(), O_RDWR | O_CLOEXEC);
    EXPECT_EQ(flock(other, LOCK_EX | LOCK_NB), -1);
    EXPECT_EQ(errno, EWOULDBLOCK);
    close(other);
}

TEST_F(StagedFileTest, LeavesTheOldFileWithoutACommit) {
    writeText(target_, "old");
    {
        StagedFile file(target_);
        writeText(file.path(), "half");
    }
    EXPECT_EQ(readText(target_), "old");
    EXPECT_EQ(files(), Names{"a.jpg"});
}

TEST_F(StagedFileTest, GivesANewFileTheDefaultPermissions) {
    const mode_t before = umask(0027);
    replace(target_, "new");
    umask(before);
    EXPECT_EQ(modeOf(target_), 0640U);
}

TEST_F(StagedFileTest, KeepsTheOldFilesPermissions) {
    writeText(target_, "old");
    chmod(target_.c_str(), 0604);
    replace(target_, "new");
    EXPECT_EQ(modeOf(target_), 0604U);
    EXPECT_EQ(readText(target_), "new");
}

TEST_F(StagedFileTest, KeepsTheOldFilesOwner) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    writeText(target_, "old");
    ASSERT_EQ(chown(target_.c_str(), OrdinaryUser::kUser, OrdinaryUser::kUser), 0);
    replace(target_, "new");

    struct stat status {};

    ASSERT_EQ(stat(target_.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, OrdinaryUser::kUser);
}

TEST_F(StagedFileTest, AcceptsTheLongestName) {
    const std::string longest = std::string(251, 'n') + ".jpg";
    replace(scratch_.file(longest), "new");
    EXPECT_EQ(files(), Names{longest});
}

TEST_F(StagedFileTest, CannotBeOpenedForAnOverlongName) {
    StagedFile file(scratch_.file(std::string(252, 'n') + ".jpg"));
    writeText(file.path(), "new");
    EXPECT_FALSE(fs::exists(file.path()) && file.commit());
}

TEST_F(StagedFileTest, FollowsALinkAndKeepsIt) {
    fs::create_directory(scratch_.path() / "elsewhere");
    const std::string real = scratch_.file("elsewhere/real.jpg");
    writeText(real, "old");
    fs::create_symlink("elsewhere/real.jpg", target_);
    replace(target_, "new");
    EXPECT_TRUE(fs::is_symlink(target_));
    EXPECT_EQ(readText(real), "new");
    EXPECT_EQ(files(), (Names{"a.jpg", "elsewhere"}));
}

TEST_F(StagedFileTest, CreatesTheFileThatADanglingLinkNames) {
    fs::create_symlink(scratch_.file("real.jpg"), scratch_.file("b.jpg"));
    fs::create_symlink("b.jpg", target_);
    replace(target_, "new");
    EXPECT_TRUE(fs::is_symlink(target_));
    EXPECT_EQ(readText(scratch_.file("real.jpg")), "new");
    EXPECT_EQ(files(), (Names{"a.jpg", "b.jpg", "real.jpg"}));
}

TEST_F(StagedFileTest, GivesUpOnALinkToItself) {
    fs::create_symlink("a.jpg", target_);
    StagedFile file(target_);
    writeText(target_, "new");
    EXPECT_TRUE(fs::is_symlink(target_));
}

TEST_F(StagedFileTest, WritesAPipeDirectly) {
    ASSERT_EQ(mkfifo(target_.c_str(), 0600), 0);
    StagedFile file(target_);
    EXPECT_EQ(file.path(), target_);
    EXPECT_FALSE(file.isRegular());
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(files(), Names{"a.jpg"});
}

TEST_F(StagedFileTest, LeavesADeviceInPlaceWhenWritingFails) {
    { const StagedFile file("/dev/null"); }
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(StagedFileTest, WritesThroughTheLinkOfAnOpenDescriptor) {
    std::FILE* open = std::fopen(target_.c_str(), "w");
    ASSERT_NE(open, nullptr);
    const std::string link = "/proc/self/fd/" + std::to_string(fileno(open));
    fs::remove(target_);
    {
        StagedFile file(link);
        EXPECT_EQ(file.path(), link);
        EXPECT_TRUE(file.commit());
    }
    std::fclose(open);
    EXPECT_EQ(files(), Names{});
}

TEST_F(StagedFileTest, WritesDirectlyInAFolderThatTakesNoNewFile) {
    writeText(target_, "old");
    chmod(target_.c_str(), 0666);
    share(0555);
    {
        const OrdinaryUser user;
        replace(target_, "new");
    }
    EXPECT_EQ(readText(target_), "new");
    EXPECT_EQ(files(), Names{"a.jpg"});
    share(0700);
}

TEST_F(StagedFileTest, DoesNotReplaceAWriteProtectedFile) {
    writeText(target_, "old");
    chmod(target_.c_str(), 0444);
    share(0777);
    {
        const OrdinaryUser user;
        const StagedFile file(target_);
        EXPECT_EQ(file.path(), target_);
    }
    EXPECT_EQ(readText(target_), "old");
}

TEST_F(StagedFileTest, ReplacesTheContentOfAnothersFileInASharedFolder) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can make another user's file";
    }
    writeText(target_, "old, and longer");
    chmod(target_.c_str(), 0666);
    share(01777);
    {
        const OrdinaryUser user;
        replace(target_, "new");
    }
    EXPECT_EQ(readText(target_), "new");
    EXPECT_EQ(files(), Names{"a.jpg"});
}

TEST_F(StagedFileTest, FailsInAMissingFolder) {
    StagedFile file(scratch_.file("missing/a.jpg"));
    writeText(file.path(), "new");
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(files(), Names{});
}

TEST_F(StagedFileTest, FailsOnAFolder) {
    StagedFile file(scratch_.path().string());
    EXPECT_EQ(std::fopen(file.path().c_str(), "w"), nullptr);
}

} // namespace
