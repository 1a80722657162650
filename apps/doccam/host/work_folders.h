// The hidden folders in which files are made before they are renamed to their targets.
#pragma once

#include "base/unique_fd.h"

#include <filesystem>

namespace doccam::host {

// A work folder in a given folder, which only this user may enter. It is locked while its owner is
// alive, so that others can recognise a folder whose owner was killed. Any thread.
class WorkFolder {
  public:
    // Creates it, and removes those left in the same place by dead processes of this user, together
    // with the library's unfinished files. On failure, as in an empty place, path() is empty; errno
    // tells why.
    explicit WorkFolder(const std::filesystem::path& place);
    // Removes it with its contents.
    ~WorkFolder();

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
    UniqueFd lock_;
};

// Removes all of this process's work folders before an immediate exit. Waits only briefly for a
// thread that is just creating or removing one.
void removeWorkFolders();

} // namespace doccam::host
