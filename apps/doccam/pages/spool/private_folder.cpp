#include "pages/spool/private_folder.h"

#include "base/files/file_placement.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <utility>

namespace doccam::host {
namespace {

constexpr mode_t kPrivateFolder = S_IRWXU;
constexpr mode_t kPrivateFile = S_IRUSR | S_IWUSR;
constexpr int kNoLinks = O_NOFOLLOW | O_CLOEXEC;

struct CloseListing {
    void operator()(DIR* opened) const { closedir(opened); }
};

bool isOwn(const UniqueFd& opened, mode_t type) {
    const auto status = statusOf(opened.get());
    if (status && (status->st_mode & S_IFMT) == type && status->st_uid == geteuid()) {
        return true;
    }
    errno = EPERM;
    return false;
}

UniqueFd ownFolder(UniqueFd opened) {
    return opened.isOpen() && isOwn(opened, S_IFDIR) && fchmod(opened.get(), kPrivateFolder) == 0
               ? std::move(opened)
               : UniqueFd();
}

// A lock that belongs to the open file, as those of a process end with any of its descriptors.
struct flock wholeFile() {
    struct flock lock {};

    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

bool writeAll(int file, std::span<const unsigned char> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

PrivateFolder::PrivateFolder(const std::string& path)
  : folder_(ownFolder(UniqueFd(open(path.c_str(), O_RDONLY | O_DIRECTORY | kNoLinks)))) {}

bool PrivateFolder::makeFolder(const std::string& name) const {
    return mkdirat(folder_.get(), name.c_str(), kPrivateFolder) == 0;
}

PrivateFolder PrivateFolder::folder(const std::string& name) const {
    PrivateFolder inside;
    inside.folder_ =
        ownFolder(UniqueFd(openat(folder_.get(), name.c_str(), O_RDONLY | O_DIRECTORY | kNoLinks)));
    return inside;
}

std::vector<std::string> PrivateFolder::names() const {
    std::vector<std::string> names;
    UniqueFd again(openat(folder_.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::unique_ptr<DIR, CloseListing> opened(fdopendir(again.get()));
    if (!opened) {
        return names;
    }
    static_cast<void>(again.release()); // closed with the other
    while (const dirent* const entry = readdir(opened.get())) {
        const std::string name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    return names;
}

bool PrivateFolder::fill(const std::string& draft, std::span<const unsigned char> bytes) const {
    const UniqueFd file(
        openat(folder_.get(), draft.c_str(), O_WRONLY | O_CREAT | O_EXCL | kNoLinks, kPrivateFile));
    return file.isOpen() && writeAll(file.get(), bytes) && fsync(file.get()) == 0;
}

bool PrivateFolder::write(const std::string& name, std::span<const unsigned char> bytes) const {
    const std::string draft = name + ".new";
    remove(draft);
    if (fill(draft, bytes) &&
        renameat(folder_.get(), draft.c_str(), folder_.get(), name.c_str()) == 0) {
        return fsync(folder_.get()) == 0;
    }
    const int reason = errno;
    remove(draft);
    errno = reason;
    return false;
}

UniqueFd PrivateFolder::file(const std::string& name) const {
    UniqueFd file(openat(folder_.get(), name.c_str(), O_RDONLY | O_NONBLOCK | kNoLinks));
    return file.isOpen() && isOwn(file, S_IFREG) ? std::move(file) : UniqueFd();
}

std::optional<std::string> PrivateFolder::read(const std::string& name, std::size_t maximum) const {
    const UniqueFd opened = file(name);
    const auto status = opened.isOpen() ? statusOf(opened.get()) : std::nullopt;
    if (!status || static_cast<std::uint64_t>(status->st_size) > maximum) {
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(status->st_size), '\0');
    const ssize_t count = ::read(opened.get(), bytes.data(), bytes.size());
    return count == static_cast<ssize_t>(bytes.size()) ? std::optional(std::move(bytes))
                                                       : std::nullopt;
}

UniqueFd PrivateFolder::lock(const std::string& name) const {
    UniqueFd file(openat(folder_.get(), name.c_str(), O_RDWR | O_CREAT | kNoLinks, kPrivateFile));
    struct flock whole = wholeFile();
    if (!file.isOpen() || !isOwn(file, S_IFREG) || fcntl(file.get(), F_OFD_SETLK, &whole) != 0) {
        return {};
    }
    // Its folder may have been removed before it was locked.
    const auto status = statusOf(file.get());
    errno = ENOENT;
    return status && status->st_nlink > 0 ? std::move(file) : UniqueFd();
}

bool PrivateFolder::isLocked(const std::string& name) const {
    const UniqueFd opened = file(name);
    struct flock whole = wholeFile();
    whole.l_type = F_RDLCK;
    return opened.isOpen() && fcntl(opened.get(), F_OFD_GETLK, &whole) == 0 &&
           whole.l_type != F_UNLCK;
}

void PrivateFolder::remove(const std::string& name) const {
    unlinkat(folder_.get(), name.c_str(), 0);
}

void PrivateFolder::removeFolder(const std::string& name) const {
    const PrivateFolder inside = folder(name);
    for (const std::string& file : inside.names()) {
        inside.remove(file);
    }
    unlinkat(folder_.get(), name.c_str(), AT_REMOVEDIR);
}

bool PrivateFolder::rename(const std::string& from, const std::string& to) const {
    return renameat(folder_.get(), from.c_str(), folder_.get(), to.c_str()) == 0 &&
           fsync(folder_.get()) == 0;
}

std::uint64_t PrivateFolder::bytes() const {
    std::uint64_t sum = 0;
    for (const std::string& name : names()) {
        struct stat status {};

        if (fstatat(folder_.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
            sum += static_cast<std::uint64_t>(status.st_size);
        }
    }
    return sum;
}

std::int64_t PrivateFolder::changed(const std::string& name) const {
    struct stat status {};

    return fstatat(folder_.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0
               ? status.st_mtim.tv_sec
               : 0;
}

} // namespace doccam::host
