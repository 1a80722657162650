#include "doctor/examination.h"
#include "support/scratch_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using doccam::host::holdersOf;

class NodeHolders : public testing::Test {
  protected:
    void addProcess(int number, const std::string& name, const std::string& opened) {
        const fs::path process = processes_ / std::to_string(number);
        fs::create_directories(process / "fd");
        std::ofstream(process / "comm") << name << '\n';
        fs::create_symlink("/dev/null", process / "fd" / "0");
        fs::create_symlink(opened, process / "fd" / "7");
    }

    doccam::test::ScratchFolder folder_;
    fs::path processes_ = folder_.file("proc");
};

TEST_F(NodeHolders, AreTheProcessesThatHaveTheNodeOpen) {
    addProcess(77, "viewer", "/dev/video0");
    addProcess(8, "grabber", "/dev/video0");
    addProcess(9, "other", "/dev/video2");
    fs::create_directories(processes_ / "sys");
    const auto holders = holdersOf("/dev/video0", processes_);
    ASSERT_EQ(holders.size(), 2U);
    EXPECT_EQ(holders[0].process, 8);
    EXPECT_EQ(holders[0].name, "grabber");
    EXPECT_EQ(holders[1].name, "viewer");
}

TEST_F(NodeHolders, LeaveOutTheCallingProcess) {
    addProcess(getpid(), "doccam", "/dev/video0");
    EXPECT_TRUE(holdersOf("/dev/video0", processes_).empty());
}

TEST_F(NodeHolders, AreNoneWhereProcessesCannotBeSeen) {
    fs::create_directories(processes_ / "12"); // without its fd folder, as another user's
    EXPECT_TRUE(holdersOf("/dev/video0", processes_).empty());
    EXPECT_TRUE(holdersOf("/dev/video0", folder_.file("missing")).empty());
}

} // namespace
