// File names with terminal control sequences.
#include "bombs.h"
#include "measured_run.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using namespace doccam::test;
using testing::HasSubstr;
using testing::Not;

// Clears the screen, followed by a C1 control character in UTF-8.
const std::string kOdd = "\033[2J\xC2\x9B";

class OddNames : public testing::Test {
  protected:
    OddNames() { work_.write(kOdd + ".png", claimingPng({.width = 32, .height = 32})); }

    // Everything that doccam prints on a terminal, including errors.
    std::string onTerminal(const std::vector<std::string>& words) const {
        int terminal = -1;
        const pid_t process = forkpty(&terminal, nullptr, nullptr, nullptr);
        if (process == 0) {
            become(words);
        }
        std::string shown;
        std::array<char, 4096> bytes{};
        for (ssize_t count = 0; (count = read(terminal, bytes.data(), bytes.size())) > 0;) {
            shown.append(bytes.data(), static_cast<std::size_t>(count));
        }
        waitpid(process, nullptr, 0);
        close(terminal);
        return shown;
    }

    [[noreturn]] void become(const std::vector<std::string>& words) const {
        std::vector<char*> command{const_cast<char*>(DOCCAM_PROGRAM)};
        for (const std::string& word : words) {
            command.push_back(const_cast<char*>(word.c_str()));
        }
        command.push_back(nullptr);
        if (chdir(work_.file(".").c_str()) == 0) {
            execv(command[0], command.data());
        }
        _exit(127);
    }

    void expectShownHarmlessly(const std::vector<std::string>& words) const {
        const std::string shown = onTerminal(words);
        EXPECT_THAT(shown, HasSubstr("\\x1b[2J\\xc2\\x9b")) << words.front();
        EXPECT_THAT(shown, Not(HasSubstr("\033[2J"))) << words.front();
        EXPECT_THAT(shown, Not(HasSubstr("\xC2\x9B"))) << words.front();
    }

    MeasuredRun work_;
};

TEST_F(OddNames, ReachATerminalEscaped) {
    expectShownHarmlessly({"clean", kOdd + ".png"});
    expectShownHarmlessly({"pdf", kOdd + ".pdf", kOdd + ".png"});
    expectShownHarmlessly({"read", kOdd + ".png"});
    expectShownHarmlessly({"read", kOdd + ".missing"});
    expectShownHarmlessly({"--virtual=" + kOdd + ".missing", "list"});
    expectShownHarmlessly({"--virtual", "capture", "--size", "640x480", kOdd + "-still.jpg"});
    expectShownHarmlessly({kOdd});
}

TEST_F(OddNames, ReachAFileUnchanged) {
    const std::string out = work_.file("out");
    const pid_t process = fork();
    if (process == 0) {
        dup2(open(out.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
        become({"clean", kOdd + ".png"});
    }
    waitpid(process, nullptr, 0);
    std::ifstream file(out);
    const std::string written{std::istreambuf_iterator<char>(file), {}};
    EXPECT_THAT(written, HasSubstr(kOdd + "-clean.png  32x32"));
}

} // namespace
