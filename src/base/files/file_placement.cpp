#include "base/files/file_placement.h"

#include "base/handles/standard_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

namespace doccam {
namespace {

namespace fs = std::filesystem;

constexpr int kMaximumLinks = 40;

bool renameRefused(int error) {
    return error == EACCES || error == EPERM || error == EBUSY || error == EXDEV;
}

bool copyContent(const std::string& from, const std::string& to) {
    const StandardFile source(std::fopen(from.c_str(), "rbe"));
    StandardFile sink(source ? std::fopen(to.c_str(), "r+be") : nullptr);
    if (!sink || ftruncate(fileno(sink.get()), 0) != 0) {
        return false;
    }
    std::array<char, 65536> chunk{};
    for (std::size_t count = 0;
         (count = std::fread(chunk.data(), 1, chunk.size(), source.get())) > 0;) {
        if (std::fwrite(chunk.data(), 1, count, sink.get()) != count) {
            return false;
        }
    }
    return std::ferror(source.get()) == 0 && closeChecked(std::move(sink));
}

} // namespace

std::optional<struct stat> statusOf(const std::string& path) {
    struct stat status {};

    if (stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return status;
}

std::optional<struct stat> statusOf(int file) {
    struct stat status {};

    if (fstat(file, &status) != 0) {
        return std::nullopt;
    }
    return status;
}

std::string endOfLinks(const std::string& path) {
    fs::path end = path;
    std::error_code notALink;
    for (int i = 0; i < kMaximumLinks; ++i) {
        const fs::path next = fs::read_symlink(end, notALink);
        if (notALink) {
            break;
        }
        end = next.is_absolute() ? next : end.parent_path() / next;
    }
    return end.string();
}

void takeOver(int file, const struct stat& existing) {
    if (fchown(file, existing.st_uid, existing.st_gid) != 0 && errno != EPERM) {
        return;
    }
    fchmod(file, existing.st_mode & 0777);
}

bool replaceFile(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str()) == 0 ||
           (renameRefused(errno) && copyContent(from, to));
}

bool placeNewFile(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    // Some file systems cannot rename without replacing; a second name does the same there.
    return (errno == EINVAL || errno == ENOSYS) && link(from.c_str(), to.c_str()) == 0;
}

} // namespace doccam
