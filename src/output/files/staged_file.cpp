#include "output/files/staged_file.h"

#include "base/files/file_placement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

namespace doccam {
namespace {

namespace fs = std::filesystem;

constexpr int kMaximumNames = 100;

// Links in /proc do not lead where their text says.
bool isSameFile(const struct stat& left, const std::string& right) {
    const auto status = statusOf(right);
    return status && status->st_dev == left.st_dev && status->st_ino == left.st_ino;
}

// Short, so that it fits wherever the target's own name does.
std::string temporaryName(const std::string& target) {
    static std::atomic<unsigned> count{0};
    const std::string name =
        ".doccam-" + std::to_string(getpid()) + "-" + std::to_string(count.fetch_add(1));
    return (fs::path(target).parent_path() / name).string();
}

// The lock shows others that the file's owner is alive. Not every file system has locks. False if
// another process took the file for abandoned before it was locked.
bool lockOrLose(int file) {
    struct stat status {};

    const bool lost = flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    return !lost && fstat(file, &status) == 0 && status.st_nlink > 0;
}

bool folderRefuses(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == ENAMETOOLONG;
}

} // namespace

StagedFile::StagedFile(const std::string& target)
  : target_(target)
  , path_(target) {
    const auto existing = statusOf(target);
    existed_ = existing || errno == EACCES || errno == ELOOP;
    if (!existing && existed_) {
        // Do not replace what may not be inspected, like another user's link in a shared folder, or
        // cannot be resolved, like circular links.
        return;
    }
    const std::string end = endOfLinks(target);
    if (existing) {
        // Nor a file that its owner has write-protected.
        if (!S_ISREG(existing->st_mode) || !isSameFile(*existing, end) ||
            faccessat(AT_FDCWD, end.c_str(), W_OK, AT_EACCESS) != 0) {
            return;
        }
    }
    target_ = path_ = end;
    stage();
}

StagedFile::~StagedFile() {
    if (!committed_ && (staged_ || !existed_)) {
        unlink(path_.c_str());
    }
}

void StagedFile::stage() {
    for (int i = 0; i < kMaximumNames; ++i) {
        const std::string name = temporaryName(target_);
        if (StandardFile file{std::fopen(name.c_str(), "wbxe")}) {
            if (!lockOrLose(fileno(file.get()))) {
                continue;
            }
            path_ = name;
            staged_ = true;
            if (const auto existing = statusOf(target_)) {
                takeOver(fileno(file.get()), *existing);
            }
            locked_ = std::move(file);
            return;
        }
        if (folderRefuses(errno)) {
            return;
        }
        if (errno != EEXIST) {
            // Opening the target itself would truncate it only to fail as well.
            path_ = name;
            staged_ = true;
            return;
        }
    }
}

bool StagedFile::isRegular() const {
    const auto status = statusOf(path_);
    return status && S_ISREG(status->st_mode);
}

bool StagedFile::commit() {
    if (!staged_) {
        committed_ = true;
        return true;
    }
    return replaceFile(path_, target_);
}

} // namespace doccam
