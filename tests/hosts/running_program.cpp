#include "running_program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

namespace doccam::test {
namespace {

struct Pipe {
    int from = -1;
    int to = -1;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    return {ends[0], ends[1]};
}

// In the child. Signals ignored by whoever runs the tests would be inherited.
[[noreturn]] void become(const std::vector<char*>& command, const std::string& folder) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        std::signal(number, SIG_DFL);
    }
    if (chdir(folder.c_str()) == 0) {
        execv(command[0], command.data());
    }
    _exit(127);
}

} // namespace

RunningProgram::RunningProgram(const std::vector<std::string>& command, const std::string& folder,
                               const std::string& out) {
    const Pipe in = makePipe();
    const Pipe errors = makePipe();
    const int outFile = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    std::vector<char*> words;
    words.reserve(command.size() + 1);
    for (const std::string& word : command) {
        words.push_back(const_cast<char*>(word.c_str()));
    }
    words.push_back(nullptr);
    process_ = fork();
    if (process_ == 0) {
        setpgid(0, 0);
        dup2(in.from, STDIN_FILENO);
        dup2(outFile, STDOUT_FILENO);
        dup2(errors.to, STDERR_FILENO);
        become(words, folder);
    }
    setpgid(process_, process_);
    close(in.from);
    close(outFile);
    close(errors.to);
    input_ = in.to;
    errors_ = fdopen(errors.from, "r");
}

RunningProgram::~RunningProgram() {
    if (process_ > 0) {
        signalGroup(SIGKILL);
        finish();
    }
    std::fclose(errors_);
    close(input_);
}

bool RunningProgram::readLine() {
    line_.clear();
    int letter = 0;
    while ((letter = std::fgetc(errors_)) != EOF && letter != '\n') {
        line_ += static_cast<char>(letter);
    }
    return letter != EOF || !line_.empty();
}

bool RunningProgram::says(const std::string& text) {
    while (readLine()) {
        if (line_.find(text) != std::string::npos) {
            return true;
        }
    }
    return false;
}

void RunningProgram::type(const std::string& text) const {
    if (write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("the program does not listen");
    }
}

void RunningProgram::signal(int number) const {
    kill(process_, number);
}

void RunningProgram::signalGroup(int number) const {
    killpg(process_, number);
}

int RunningProgram::finish() {
    std::string last = line_;
    while (readLine()) {
        last = line_;
    }
    line_ = last;
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace doccam::test
