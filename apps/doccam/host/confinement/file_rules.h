// Which files a process may still open, by Landlock.
#pragma once

#include <cstdint>
#include <filesystem>

namespace doccam::host {

// A list of what is allowed, each with all that is below it; a path that is not there is passed
// over. Where the kernel has no Landlock, or one that cannot rename between folders, nothing has an
// effect.
class FileRules {
  public:
    FileRules();
    ~FileRules();
    FileRules(const FileRules&) = delete;
    FileRules& operator=(const FileRules&) = delete;

    // Whether the kernel has what enforce() needs.
    static bool supported();

    void allowReading(const std::filesystem::path& path);
    // Making, changing and removing files, sockets and folders; the folder itself by rmdir().
    void allowWriting(const std::filesystem::path& folder);
    // Writing to devices and steering them.
    void allowUsingDevices(const std::filesystem::path& path);

    // Refuses all else to the calling thread and those that it starts from now on, and all TCP
    // ports where Landlock knows of them. False when that is not possible.
    bool enforce() const;

  private:
    void allow(const std::filesystem::path& path, std::uint64_t rights) const;

    std::uint64_t handled_ = 0;
    int ruleset_ = -1;
};

} // namespace doccam::host
