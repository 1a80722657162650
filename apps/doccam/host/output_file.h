// A file that appears whole or not at all, and replaces nothing unasked.
#pragma once

#include "host/work_folders.h"

#include <filesystem>
#include <optional>
#include <string>

namespace doccam::host {

// Work is done in a hidden folder beside the target, which is removed with the object.
class OutputFile {
  public:
    // Throws Failure when something is at target already and force is not set, when what is there
    // is no regular file, or when target's folder cannot be written to.
    OutputFile(const std::filesystem::path& target, bool force);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // A path in the work folder for a file of the given name; the name's extension counts.
    std::string part(const std::string& name) const;

    // A part that has the target's own extension.
    std::string draft() const;

    // Moves the part at path to the target. Throws Failure when that cannot be done, or when a file
    // has appeared there meanwhile and force is not set.
    void publish(const std::string& path);

    // Throws Failure for a part that could not be written whole.
    [[noreturn]] void failForLackOfSpace() const;

    // As it was named.
    const std::filesystem::path& target() const { return target_; }

  private:
    std::filesystem::path target_;
    std::filesystem::path place_; // target_ itself, or the file that a link there names
    std::optional<WorkFolder> work_;
    bool force_;
};

} // namespace doccam::host
