// The program itself, run on virtual cameras in a folder of its own.
#pragma once

#include "running_program.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace doccam::test {

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;

    nlohmann::json json() const { return nlohmann::json::parse(out); }
};

// The exit codes of docs/command-line.md.
enum Status {
    kDone = 0,
    kNothingFound = 1,
    kUsage = 2,
    kNoCamera = 3,
    kCameraFailed = 4,
    kFileFailed = 5,
    kInterrupted = 130
};

class HostProgramTest : public testing::Test {
  protected:
    HostProgramTest();

    // Runs doccam with a shell command line, in the folder, with an empty home.
    Outcome run(const std::string& arguments, const std::string& input = "") const;

    // The same under the launcher, with the cameras of a scenario, given as a JSON list.
    Outcome runWith(const std::string& cameras, const std::string& arguments,
                    const std::string& input = "") const;

    // Starts what runWith runs, within another command if one is given. Its cameras can be
    // unplugged with unplug().
    RunningProgram start(const std::string& cameras, const std::vector<std::string>& arguments,
                         const std::vector<std::string>& within = {}) const;

    // Unplugs the first camera of the started program.
    void unplug() const;

    // The standard output of the started program. Call after its end.
    std::string printed() const;

    // A picture of the drawn sheet; number increments its texts.
    std::string drawSheet(const std::string& name, int number = 0) const;

    // Sets a JPEG's orientation tag to a camera held on its side.
    void turnOnItsSide(const std::string& name) const;

    std::string file(const std::string& name) const { return work_ + "/" + name; }

    // Where the program keeps what outlives it; another than the home.
    std::string state() const { return folder_.file("state"); }

    // Where it keeps what the user has set.
    std::string config() const { return home_ + "/.config"; }

    // The names of all files in the folder and in the home.
    std::vector<std::string> files() const;

  private:
    Outcome shell(const std::string& command, const std::string& input) const;
    std::string scenario(const std::string& cameras) const;

    ScratchFolder folder_;
    std::string work_;
    std::string home_;
};

// The description of a fast camera with one small frame size; fields precede the defaults.
std::string camera(const std::string& fields = "");

// A line with the program's name and one sentence.
testing::Matcher<const std::string&> isOneSentence();

} // namespace doccam::test
