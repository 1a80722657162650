// A folder that only this user may enter, whose files are written whole or not at all.
#pragma once

#include "base/unique_fd.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace doccam::host {

// Names are of entries of the folder, never paths. Links in it are not followed, and entries of
// other users are not used. Any thread, except that one name has one writer at a time.
class PrivateFolder {
  public:
    // Not open, as is every folder that could not be opened; errno tells why.
    PrivateFolder() = default;

    // Opens the folder at path, which must be this user's own, and makes it private.
    explicit PrivateFolder(const std::string& path);

    bool isOpen() const { return folder_.isOpen(); }

    // Creates a folder inside. False with errno set.
    bool makeFolder(const std::string& name) const;

    // Opens a folder inside.
    PrivateFolder folder(const std::string& name) const;

    std::vector<std::string> names() const;

    // Writes a file, replacing one of the same name, so that the whole file is there after a power
    // failure once this returns true, and none or the old one before. False with errno set.
    bool write(const std::string& name, std::span<const unsigned char> bytes) const;

    // Opens a file for reading. Not open with errno set.
    UniqueFd file(const std::string& name) const;

    // A file of at most maximum bytes; none with errno set.
    std::optional<std::string> read(const std::string& name, std::size_t maximum) const;

    // Creates a file unless it exists and locks it until it is closed. Not open with errno set;
    // EAGAIN if it is locked already, also by this process.
    UniqueFd lock(const std::string& name) const;

    bool isLocked(const std::string& name) const;

    void remove(const std::string& name) const;

    // Removes a folder inside with its files; it has no folders.
    void removeFolder(const std::string& name) const;

    // Renames an entry to an unused name. False with errno set.
    bool rename(const std::string& from, const std::string& to) const;

    // The bytes of all files.
    std::uint64_t bytes() const;

    // Seconds since 1970 when an entry was last changed.
    std::int64_t changed(const std::string& name) const;

  private:
    bool fill(const std::string& draft, std::span<const unsigned char> bytes) const;

    UniqueFd folder_;
};

} // namespace doccam::host
