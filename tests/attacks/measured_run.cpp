#include "measured_run.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace doccam::test {
namespace {

[[noreturn]] void startAs(const std::vector<std::string>& words, const std::string& folder,
                          const std::string& err, const std::string& setting) {
    std::vector<char*> command;
    for (const std::string& word : words) {
        command.push_back(const_cast<char*>(word.c_str()));
    }
    command.push_back(nullptr);
    if (!setting.empty()) {
        putenv(const_cast<char*>(setting.c_str()));
    }
    dup2(open("/dev/null", O_RDWR), STDOUT_FILENO);
    dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
    if (chdir(folder.c_str()) == 0) {
        execv(command[0], command.data());
    }
    _exit(127);
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

} // namespace

std::vector<std::vector<std::string>> commandsOn(const std::string& name) {
    return {{"pdf", "all.pdf", name},           {"clean", name},
            {"clean", "--bright-sheet", name},  {"clean", "--crop", name},
            {"clean", "--look", "paper", name}, {"read", name},
            {"--virtual=" + name, "list"}};
}

void MeasuredRun::write(const std::string& name, const std::string& bytes) const {
    std::ofstream(file(name), std::ios::binary) << bytes;
}

Cost MeasuredRun::run(const std::vector<std::string>& words, const std::string& setting) const {
    std::vector<std::string> command{DOCCAM_PROGRAM};
    command.insert(command.end(), words.begin(), words.end());
    return runProgram(command, setting);
}

Cost MeasuredRun::runProgram(const std::vector<std::string>& command,
                             const std::string& setting) const {
    const std::string err = aside_.file("err");
    const auto start = std::chrono::steady_clock::now();
    const pid_t process = fork();
    if (process == 0) {
        startAs(command, folder_.path(), err, setting);
    }
    int status = 0;
    rusage used{};
    if (wait4(process, &status, 0, &used) != process) {
        throw std::runtime_error("the program cannot be started");
    }
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    std::ifstream said(err);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, used.ru_maxrss * 1024 / 1000000,
            seconds(used.ru_utime) + seconds(used.ru_stime), wall.count(),
            std::string(std::istreambuf_iterator<char>(said), {})};
}

std::vector<std::string> MeasuredRun::files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace doccam::test
