#include "host/work_folders.h"
#include "support/scratch_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

namespace {

namespace fs = std::filesystem;
using doccam::host::WorkFolder;

class WorkFolders : public testing::Test {
  protected:
    std::ptrdiff_t entries() const {
        return std::distance(fs::directory_iterator(place_.path()), {});
    }

    // Lets a process make a folder with a file in it and die.
    void abandonOne() const {
        const pid_t process = fork();
        if (process == 0) {
            const WorkFolder folder(place_.path());
            std::ofstream(folder.path() / "draft.png") << "half";
            _exit(folder.path().empty() ? 1 : 0);
        }
        int status = 0;
        waitpid(process, &status, 0);
        ASSERT_EQ(status, 0);
        ASSERT_EQ(entries(), 1);
    }

    doccam::test::ScratchFolder place_;
};

TEST_F(WorkFolders, OfDeadProcessesAreRemoved) {
    abandonOne();
    { const WorkFolder folder(place_.path()); }
    EXPECT_EQ(entries(), 0);
}

TEST_F(WorkFolders, OfLivingProcessesStay) {
    std::optional<WorkFolder> first(std::in_place, place_.path());
    const WorkFolder second(place_.path());
    EXPECT_TRUE(fs::exists(first->path()));
    first.reset();
    EXPECT_EQ(entries(), 1);
}

TEST_F(WorkFolders, OfUnknownOwnersStay) {
    const fs::path lookalike = place_.path() / ".doccam-letter";
    fs::create_directory(lookalike);
    std::ofstream(lookalike / "letter.txt") << "mine";
    fs::permissions(lookalike, fs::perms::owner_all);
    { const WorkFolder folder(place_.path()); }
    EXPECT_TRUE(fs::exists(lookalike / "letter.txt"));
}

TEST_F(WorkFolders, ThatOthersMayEnterStay) {
    abandonOne();
    fs::permissions(fs::directory_iterator(place_.path())->path(), fs::perms(0755));
    { const WorkFolder folder(place_.path()); }
    EXPECT_EQ(entries(), 1);
}

TEST_F(WorkFolders, BehindALinkStay) {
    abandonOne();
    const fs::path abandoned = fs::directory_iterator(place_.path())->path();
    const doccam::test::ScratchFolder other;
    fs::create_directory_symlink(abandoned, other.path() / ".doccam-linked");
    { const WorkFolder folder(other.path()); }
    EXPECT_TRUE(fs::exists(abandoned / "draft.png"));
}

TEST_F(WorkFolders, AreRemovedWithTheUnfinishedFilesOfDeadProcesses) {
    const pid_t dead = fork();
    if (dead == 0) {
        _exit(0);
    }
    waitpid(dead, nullptr, 0);
    const std::string abandoned = place_.file(".doccam-" + std::to_string(dead) + "-0");
    const std::string locked = place_.file(".doccam-" + std::to_string(dead) + "-1");
    const std::string living = place_.file(".doccam-" + std::to_string(getpid()) + "-0");
    const std::string other = place_.file(".doccam-" + std::to_string(dead) + "-a");
    for (const std::string& name : {abandoned, locked, living, other}) {
        std::ofstream(name) << "half";
    }
    const int lock = open(locked.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    { const WorkFolder folder(place_.path()); }
    EXPECT_FALSE(fs::exists(abandoned));
    for (const std::string& name : {locked, living, other}) {
        EXPECT_TRUE(fs::exists(name)) << name;
    }
    close(lock);
}

TEST_F(WorkFolders, OfTheProcessAreAllRemovedBeforeAnImmediateExit) {
    const WorkFolder first(place_.path());
    const WorkFolder second(place_.path());
    doccam::host::removeWorkFolders();
    EXPECT_EQ(entries(), 0);
}

} // namespace
