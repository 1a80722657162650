// A file that appears completely or not at all, and replaces nothing unless forced.
#pragma once

#include "host/work_folders.h"

#include <filesystem>
#include <optional>
#include <string>

namespace doccam::host {

// Works in a hidden folder beside the target, which is removed with the object.
class OutputFile {
  public:
    // Throws Failure if target exists and force is not set, if it is not a regular file, or if its
    // folder is not writable.
    OutputFile(const std::filesystem::path& target, bool force);

    // A path in the work folder with the extension of name.
    std::string part(const std::string& name) const;

    // A part with the target's own extension.
    std::string draft() const;

    // Moves the part at path to the target. Throws Failure if that fails, or if a file has appeared
    // there meanwhile and force is not set.
    void publish(const std::string& path);

    // Throws Failure for a part that could not be written completely.
    [[noreturn]] void failForLackOfSpace() const;

    // The target as given.
    const std::filesystem::path& target() const { return target_; }

  private:
    std::filesystem::path target_;
    std::filesystem::path place_; // target_, or the file that it links to
    std::optional<WorkFolder> work_;
    bool force_;
};

} // namespace doccam::host
