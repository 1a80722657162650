// Standard output that takes a file's bytes.
#pragma once

#include "host/context.h"
#include "host/work_folders.h"
#include "streams/stream_words.h"

#include <string>

namespace doccam::host {

// The file is made in a temporary folder, which goes with the object, and then sent whole.
class OutputStream {
  public:
    // No results are printed from now on. Throws Failure with --json, if standard
    // output is a terminal, or if there is no temporary folder.
    OutputStream(const GlobalOptions& options, const std::string& extension);

    // Where to make the file; no file is there yet.
    const std::string& path() const { return path_; }

    // What work returns. A Failure that it throws names the file as standard output.
    template <typename Work>
    auto named(const Work& work) const {
        return withStreamWords(path_, "standard output", work);
    }

    // Sends the file. Throws Failure if its reader has gone or the disk is full.
    void send() const;

  private:
    WorkFolder folder_;
    std::string path_;
};

} // namespace doccam::host
