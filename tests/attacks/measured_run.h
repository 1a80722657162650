// Runs of the program on files in its own folder, with their cost.
#pragma once

#include "support/scratch_folder.h"

#include <string>
#include <vector>

namespace doccam::test {

// The exit codes of docs/command-line.md.
enum Status { kDone = 0, kNothingFound = 1, kUsage = 2, kNoCamera = 3, kInterrupted = 130 };

struct Cost {
    int status = -1;    // -1 after a signal
    long megabytes = 0; // peak of any of its processes
    double processorSeconds = 0;
    double wallSeconds = 0;
    std::string err;
};

// The commands that read the picture of that name, each with its most expensive options.
std::vector<std::vector<std::string>> commandsOn(const std::string& name);

class MeasuredRun {
  public:
    // Writes a file in the folder.
    void write(const std::string& name, const std::string& bytes) const;

    std::string file(const std::string& name) const { return folder_.file(name); }

    // Runs doccam with these arguments in the folder and waits for its end. setting is one
    // environment variable, NAME=VALUE.
    Cost run(const std::vector<std::string>& words, const std::string& setting = "") const;

    // The same with another program.
    Cost runProgram(const std::vector<std::string>& command, const std::string& setting = "") const;

    // The sorted names of all files, including hidden ones.
    std::vector<std::string> files() const;

  private:
    ScratchFolder folder_;
    ScratchFolder aside_;
};

} // namespace doccam::test
