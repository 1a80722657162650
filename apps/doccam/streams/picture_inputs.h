// The pictures that a command is given, of which one may come on standard input.
#pragma once

#include "base/unique_fd.h"
#include "host/interrupt.h"
#include "streams/stream_words.h"

#include <string>
#include <vector>

namespace doccam::host {

class PictureInputs {
  public:
    // Reads standard input, up to the limits of picture files, if it is among the files as "-".
    // Throws Failure if it is so twice, a terminal, empty or too long; Interruption.
    PictureInputs(const std::vector<std::string>& files, const Interrupt& interrupt);

    // In the same order; that of standard input is a file for this process and its children.
    const std::vector<std::string>& paths() const { return paths_; }

    // Those of them that are files of the user.
    std::vector<std::string> files() const;

    // The name of one of the paths in results, where standard input is "-", and in sentences.
    std::string nameOf(const std::string& path) const;

    std::string wordsFor(const std::string& path) const {
        return path == inputPath_ ? kWords : path;
    }

    // What work returns. A Failure that it throws names standard input as such.
    template <typename Work>
    auto named(const Work& work) const {
        return withStreamWords(inputPath_, kWords, work);
    }

  private:
    static constexpr const char* kWords = "standard input";

    UniqueFd input_;
    std::string inputPath_; // empty if there is none
    std::vector<std::string> paths_;
};

// Whether name stands for standard input or output.
inline bool isStandardStream(const std::string& name) {
    return name == "-";
}

} // namespace doccam::host
