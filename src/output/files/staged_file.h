// A file that appears under its name complete or not at all.
#pragma once

#include "base/handles/standard_file.h"

#include <string>

namespace doccam {

// Offers a temporary file beside the target, which commit() puts in the target's place. Without a
// commit the target stays as it was and nothing is left beside it. A symbolic link is followed and
// kept; the target's permissions are kept, a new file gets the ordinary ones.
//
// A target that is no regular file, or that may be written while its folder takes no new file, is
// offered itself: then a failed writer may leave it shortened, but never a new file half written.
class StagedFile {
  public:
    explicit StagedFile(const std::string& target);
    ~StagedFile();
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    // The file to write, by overwriting it. It cannot be opened for writing when the target cannot
    // be written.
    const std::string& path() const { return path_; }

    // True when path() is a regular file, whose content can be read back.
    bool isRegular() const;

    // Puts the written file in the target's place. False when that failed.
    bool commit();

  private:
    void stage();

    std::string target_;
    std::string path_;
    StandardFile locked_;    // the temporary file, open for as long as it is ours
    bool staged_ = false;    // path_ is a temporary file of ours
    bool existed_ = false;   // the target was there at the start
    bool committed_ = false; // path_ is none of our business any more
};

} // namespace doccam
