// Restricting file access with Landlock.
#pragma once

#include <cstdint>
#include <filesystem>

namespace doccam::host {

// A list of allowed paths, each including everything below it; missing paths are ignored. Has no
// effect if the kernel lacks Landlock, or its version cannot rename between folders.
class FileRules {
  public:
    FileRules();
    ~FileRules();
    FileRules(const FileRules&) = delete;
    FileRules& operator=(const FileRules&) = delete;

    // Whether the kernel supports enforce().
    static bool supported();

    void allowReading(const std::filesystem::path& path);
    // Creating, changing and removing files, sockets and folders; the folder itself by rmdir().
    void allowWriting(const std::filesystem::path& folder);
    // Writing to and controlling devices.
    void allowUsingDevices(const std::filesystem::path& path);

    // Denies everything else to the calling thread and those it starts from now on, and all TCP
    // ports if Landlock supports that. False if it is not possible.
    bool enforce() const;

  private:
    void allow(const std::filesystem::path& path, std::uint64_t rights) const;

    std::uint64_t handled_ = 0;
    int ruleset_ = -1;
};

} // namespace doccam::host
