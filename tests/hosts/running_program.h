// A running program, observed through its output and controlled from outside.
#pragma once

#include <sys/types.h>

#include <cstdio>
#include <string>
#include <vector>

namespace doccam::test {

// Runs in a folder as the leader of a process group. Its standard input is closed with the object,
// its standard output goes to a file, and its standard error is read here.
class RunningProgram {
  public:
    RunningProgram(const std::vector<std::string>& command, const std::string& folder,
                   const std::string& out);
    // Ends the group if the program is still running.
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    // Waits for a line on standard error that contains text; false when the program ends without
    // it.
    bool says(const std::string& text);

    pid_t process() const { return process_; }

    void type(const std::string& text) const;

    void signal(int number) const;
    void signalGroup(int number) const;

    // Waits for the end and returns the exit status, -1 after a signal.
    int finish();

    // The last line that was read.
    const std::string& lastLine() const { return line_; }

  private:
    bool readLine();

    pid_t process_ = -1;
    int input_ = -1;
    std::FILE* errors_ = nullptr;
    std::string line_;
};

} // namespace doccam::test
