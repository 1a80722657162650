// The hidden folders in which files are made before they appear under their names.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace doccam::host {

// A work folder in a given folder; only this user may enter it. It is locked for as long as its
// owner lives, so that others can tell a folder whose owner was killed. Any thread.
class WorkFolder {
  public:
    // Makes it, and removes those that dead processes of this user have left in the same place, and
    // the library's own unfinished files with them.
    // When it cannot be made, path() is empty and errno says why.
    explicit WorkFolder(const std::filesystem::path& place);
    // Removes it with all that is in it.
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
    int lock_ = -1;
};

// Removes all of this process's, right before it ends at once. A thread that makes or removes one
// at this very moment is not waited for long.
void removeWorkFolders();

} // namespace doccam::host
