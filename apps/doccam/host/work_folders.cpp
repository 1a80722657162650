#include "host/work_folders.h"

#include "base/files/file_placement.h"
#include "host/texts.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string_view>
#include <vector>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPrefix = ".doccam-";
constexpr const char* kOwner = "owner"; // the file that a folder's owner locks
constexpr std::size_t kRandomLetters = 6;
constexpr int kAttempts = 10;

std::timed_mutex listing;

// Absolute, as the current folder may change. Never destroyed: a signal may arrive at process exit.
std::vector<fs::path>& ownFolders() {
    static auto& folders = *new std::vector<fs::path>;
    return folders;
}

bool isOwn(const std::optional<struct stat>& status, mode_t type) {
    return status && (status->st_mode & S_IFMT) == type && status->st_uid == geteuid();
}

// Locks the open folder's owner file, which only this user can have created; with flags O_CREAT |
// O_EXCL creates it first. Not open if another process has the lock, the folder is not ours or has
// gone, or the file system has no locks.
UniqueFd lockOwner(const UniqueFd& folder, int flags) {
    UniqueFd owner(openat(folder.get(), kOwner, O_RDWR | O_NOFOLLOW | O_CLOEXEC | flags, 0600));
    if (!owner.isOpen() || flock(owner.get(), LOCK_EX | LOCK_NB) != 0) {
        return {};
    }
    const auto status = statusOf(owner.get());
    return isOwn(status, S_IFREG) && status->st_nlink > 0 ? std::move(owner) : UniqueFd();
}

UniqueFd openFolder(const fs::path& path) {
    return UniqueFd(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

bool hasWorkFoldersName(const std::string& name) {
    const std::string prefix = kPrefix;
    return name.size() == prefix.size() + kRandomLetters && name.starts_with(prefix) &&
           std::all_of(name.begin() + static_cast<std::ptrdiff_t>(prefix.size()), name.end(),
                       [](unsigned char letter) { return std::isalnum(letter) != 0; });
}

// Other machines' locks are not visible on these.
bool isShared(const fs::path& folder) {
    constexpr std::array<unsigned long, 9> kNetworks{
        NFS_SUPER_MAGIC,  SMB_SUPER_MAGIC, SMB2_SUPER_MAGIC, CIFS_SUPER_MAGIC, FUSE_SUPER_MAGIC,
        CEPH_SUPER_MAGIC, AFS_SUPER_MAGIC, CODA_SUPER_MAGIC, V9FS_MAGIC};

    struct statfs status {};

    return statfs(folder.c_str(), &status) != 0 ||
           std::find(kNetworks.begin(), kNetworks.end(),
                     static_cast<unsigned long>(status.f_type) & 0xFFFFFFFFUL) != kNetworks.end();
}

void removeContent(const fs::path& folder) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        std::error_code ignored;
        fs::remove_all(entry, ignored);
    }
}

// rmdir is the only operation that a confined process may still do in the parent folder.
void removeAll(const fs::path& path) {
    removeContent(path);
    rmdir(path.c_str());
}

void removeIfAbandoned(const fs::path& path) {
    const UniqueFd folder = openFolder(path);
    const auto status = statusOf(folder.get());
    if (!isOwn(status, S_IFDIR) || (status->st_mode & 0777) != 0700) {
        return;
    }
    if (const UniqueFd owner = lockOwner(folder, 0); owner.isOpen()) {
        // Others with write access might replace the path, so go through the open folder.
        removeContent("/proc/self/fd/" + std::to_string(folder.get()));
        rmdir(path.c_str());
    }
}

// The process that owns an unfinished file of the library, .doccam-PROCESS-NUMBER; 0 for any other
// name.
pid_t processOf(const std::string& name) {
    const std::string_view rest = std::string_view(name).substr(std::strlen(kPrefix));
    const std::size_t dash = std::min(rest.find('-'), rest.size() - 1);
    const auto process = parseNumber<pid_t>(rest.substr(0, dash));
    return process && parseNumber<unsigned>(rest.substr(dash + 1)) ? *process : 0;
}

// Process numbers are reused, and may be invisible across containers, so only the lock is reliable.
void removeIfAbandoned(const fs::path& path, pid_t process) {
    if (kill(process, 0) == 0 || errno != ESRCH) {
        return;
    }
    const UniqueFd file(open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    const auto opened = statusOf(file.get());

    struct stat named {};

    if (isOwn(opened, S_IFREG) && opened->st_nlink == 1 &&
        flock(file.get(), LOCK_EX | LOCK_NB) == 0 && lstat(path.c_str(), &named) == 0 &&
        named.st_dev == opened->st_dev && named.st_ino == opened->st_ino) {
        unlink(path.c_str());
    }
}

void removeAbandoned(const fs::path& place) {
    if (isShared(place)) {
        return;
    }
    std::error_code error;
    for (fs::directory_iterator entry(place, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(kPrefix)) {
            continue;
        }
        if (hasWorkFoldersName(name)) {
            removeIfAbandoned(entry->path());
        } else if (const pid_t process = processOf(name); process > 0) {
            removeIfAbandoned(entry->path(), process);
        }
    }
}

fs::path makeFolder(const fs::path& place) {
    std::string name = (place / (kPrefix + std::string(kRandomLetters, 'X'))).string();
    return mkdtemp(name.data()) != nullptr ? fs::path(name) : fs::path();
}

} // namespace

WorkFolder::WorkFolder(const fs::path& place) {
    if (place.empty()) {
        return;
    }
    removeAbandoned(place);
    const std::lock_guard guard(listing);
    // Another process may take it for abandoned before it is locked.
    for (int attempt = 0; attempt < kAttempts && !lock_.isOpen(); ++attempt) {
        path_ = makeFolder(place);
        if (path_.empty()) {
            return;
        }
        std::error_code ignored;
        ownFolders().push_back(fs::absolute(path_, ignored));
        lock_ = lockOwner(openFolder(path_), O_CREAT | O_EXCL);
        if (!lock_.isOpen() && fs::exists(path_, ignored)) {
            return; // the file system has no locks
        }
    }
}

WorkFolder::~WorkFolder() {
    if (path_.empty()) {
        return;
    }
    std::error_code ignored;
    const fs::path listed = fs::absolute(path_, ignored);
    removeAll(path_);
    const std::lock_guard guard(listing);
    std::erase(ownFolders(), listed);
}

void removeWorkFolders() {
    constexpr std::chrono::milliseconds kWait{100};
    // The thread sanitizer does not see a timed lock on the steady clock.
    const std::unique_lock lock(listing, std::chrono::system_clock::now() + kWait);
    if (lock.owns_lock()) {
        for (const fs::path& folder : ownFolders()) {
            removeAll(folder);
        }
    }
}

} // namespace doccam::host
