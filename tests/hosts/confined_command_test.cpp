#include "host_program.h"

#include <csignal>
#include <filesystem>
#include <fstream>

namespace {

using namespace doccam::test;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Ne;
using testing::StartsWith;
namespace fs = std::filesystem;

class Confined : public HostProgramTest {
  protected:
    void SetUp() override {
        if (!DOCCAM_CONFINED) {
            GTEST_SKIP() << "this build is not confined";
        }
    }

    // doccam serve without a camera, with its pages in the test's folder.
    RunningProgram serving(const std::string& options) const {
        const std::string command = "exec env TMPDIR=" + file("") + " XDG_STATE_HOME=" + state() +
                                    " " DOCCAM_PROGRAM " " + options + " serve >&2";
        return {{"/bin/sh", "-c", command}, file(""), "/dev/null"};
    }

    // The seccomp mode of each thread: 0 off, 2 filtered.
    static std::vector<int> filtersOf(pid_t process) {
        std::vector<int> filters;
        for (const auto& thread :
             fs::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
            std::ifstream status(thread.path() / "status");
            for (std::string word; status >> word;) {
                if (word == "Seccomp:") {
                    status >> filters.emplace_back();
                }
            }
        }
        return filters;
    }
};

TEST_F(Confined, IsEveryThreadOfTheServer) {
    RunningProgram server = serving("");
    ASSERT_TRUE(server.says("http://"));
    EXPECT_THAT(filtersOf(server.process()), Each(2));
}

TEST_F(Confined, ServerRemovesItsFolderAtTheEnd) {
    RunningProgram server = serving("");
    ASSERT_TRUE(server.says("http://"));
    EXPECT_THAT(files(), ElementsAre(StartsWith(".doccam-")));
    server.signal(SIGTERM);
    EXPECT_EQ(server.finish(), kDone);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Confined, ServerThatWasKilledLeavesItsFolderToTheNext) {
    {
        RunningProgram server = serving("");
        ASSERT_TRUE(server.says("http://"));
        server.signal(SIGKILL);
        server.finish();
    }
    const auto left = files();
    ASSERT_THAT(left, ElementsAre(StartsWith(".doccam-")));
    fs::create_directory(file(left.front()) + "/pages-1.pdf.pages");
    RunningProgram next = serving("");
    ASSERT_TRUE(next.says("http://"));
    EXPECT_THAT(files(), ElementsAre(AllOf(StartsWith(".doccam-"), Ne(left.front()))));
    next.signal(SIGTERM);
    EXPECT_EQ(next.finish(), kDone);
}

TEST_F(Confined, IsNothingWhenSwitchedOff) {
    RunningProgram server = serving("--no-confinement");
    ASSERT_TRUE(server.says("http://"));
    EXPECT_THAT(filtersOf(server.process()), Each(0));
}

} // namespace
