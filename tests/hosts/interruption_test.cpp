#include "host_program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>

namespace {

using namespace doccam::test;
using testing::IsEmpty;

class Interruption : public HostProgramTest {
  protected:
    // Starts the command under the launcher, as a group of its own, and waits for its first line of
    // progress. Its standard input never ends.
    void start(const std::vector<std::string>& arguments) {
        const std::vector<std::string> command = commandWith(camera(), arguments);
        int progress[2];
        int input[2];
        ASSERT_EQ(pipe2(progress, O_CLOEXEC), 0);
        ASSERT_EQ(pipe2(input, O_CLOEXEC), 0);
        input_ = input[1];
        const std::string folder = file(".");
        launcher_ = fork();
        if (launcher_ == 0) {
            setpgid(0, 0);
            dup2(input[0], STDIN_FILENO);
            dup2(progress[1], STDERR_FILENO);
            std::vector<char*> words;
            for (const std::string& word : command) {
                words.push_back(const_cast<char*>(word.c_str()));
            }
            words.push_back(nullptr);
            if (chdir(folder.c_str()) == 0) {
                execv(words[0], words.data());
            }
            _exit(127);
        }
        setpgid(launcher_, launcher_);
        close(input[0]);
        close(progress[1]);
        std::FILE* lines = fdopen(progress[0], "r");
        char line[256] = "";
        EXPECT_NE(std::fgets(line, sizeof line, lines), nullptr);
        progress_ = lines;
    }

    int finish() {
        int status = 0;
        waitpid(launcher_, &status, 0);
        std::fclose(progress_);
        close(input_);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    pid_t launcher_ = -1;
    int input_ = -1;
    std::FILE* progress_ = nullptr;
};

TEST_F(Interruption, AtTheTerminalClosesTheCameraAndLeavesNoFile) {
    start({"scan", "a.pdf"});
    killpg(launcher_, SIGINT);
    EXPECT_EQ(finish(), kInterrupted);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Interruption, ByAnotherProcessReachesTheProgramThroughTheLauncher) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        start({"scan", "--auto", "--pages", "9", "a.pdf"});
        kill(launcher_, signal);
        EXPECT_EQ(finish(), kInterrupted);
        EXPECT_THAT(files(), IsEmpty());
    }
}

} // namespace
