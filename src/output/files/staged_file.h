// A file that appears under its name completely or not at all.
#pragma once

#include "base/handles/standard_file.h"

#include <string>

namespace doccam {

// Provides a temporary file beside the target, with which commit() replaces the target. Without a
// commit the target is unchanged and nothing is left beside it. A symbolic link is followed and
// kept; the target's permissions are kept, a new file gets the default ones.
//
// If the target is not a regular file, or is writable in a folder that takes no new file, the
// target itself is provided: a failed writer may then leave it truncated, but never a new file half
// written.
class StagedFile {
  public:
    explicit StagedFile(const std::string& target);
    ~StagedFile();
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    // The file to overwrite. It cannot be opened for writing if the target is not writable.
    const std::string& path() const { return path_; }

    // Whether path() is a regular file, whose content can be read back.
    bool isRegular() const;

    // Replaces the target with the written file. False on failure.
    bool commit();

  private:
    void stage();

    std::string target_;
    std::string path_;
    StandardFile locked_;    // the temporary file, open while it is ours
    bool staged_ = false;    // path_ is a temporary file of ours
    bool existed_ = false;   // the target existed at the start
    bool committed_ = false; // path_ is no longer ours
};

} // namespace doccam
