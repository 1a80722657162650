// Preloaded into a program: fails at a chosen change of the files in a folder.
//   FAILING_FILES_IN  part of the path of the folder or file
//   FAILING_FILES_AT  the change, counted from 1
//   FAILING_FILES_BY  kill: the process is killed instead; full: no write succeeds from then on;
//                     hang: the calling thread never returns
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

std::atomic<int> changes{0};

template <typename Call>
Call next(const char* name) {
    return reinterpret_cast<Call>(dlsym(RTLD_NEXT, name));
}

std::string setting(const char* name) {
    const char* const text = std::getenv(name);
    return text != nullptr ? text : "";
}

std::string pathOf(int descriptor) {
    std::array<char, 4096> path{};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = readlink(link.c_str(), path.data(), path.size());
    return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : "";
}

// Whether the change of something at descriptor is to fail for lack of space.
bool failsAt(int descriptor, bool needsSpace) {
    static const std::string folder = setting("FAILING_FILES_IN");
    static const std::string by = setting("FAILING_FILES_BY");
    static const int at = std::atoi(setting("FAILING_FILES_AT").c_str());
    if (folder.empty() || pathOf(descriptor).find(folder) == std::string::npos) {
        return false;
    }
    const int number = ++changes;
    if (number == at && by == "kill") {
        raise(SIGKILL); // kill() is refused to confined programs
    }
    while (number == at && by == "hang") {
        pause();
    }
    return number >= at && by == "full" && needsSpace;
}

} // namespace

// The names of the C library.
extern "C" {

int openat(int folder, const char* name, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if ((flags & O_CREAT) != 0) {
        failsAt(folder, false);
    }
    return next<int (*)(int, const char*, int, ...)>("openat")(folder, name, flags, mode);
}

ssize_t write(int file, const void* bytes, size_t count) {
    if (failsAt(file, true)) {
        errno = ENOSPC;
        return -1;
    }
    return next<ssize_t (*)(int, const void*, size_t)>("write")(file, bytes, count);
}

ssize_t writev(int file, const iovec* parts, int count) {
    if (failsAt(file, true)) {
        errno = ENOSPC;
        return -1;
    }
    return next<ssize_t (*)(int, const iovec*, int)>("writev")(file, parts, count);
}

int fsync(int file) {
    failsAt(file, false);
    return next<int (*)(int)>("fsync")(file);
}

int renameat(int from, const char* name, int to, const char* other) {
    failsAt(from, false);
    return next<int (*)(int, const char*, int, const char*)>("renameat")(from, name, to, other);
}

int mkdirat(int folder, const char* name, mode_t mode) {
    failsAt(folder, false);
    return next<int (*)(int, const char*, mode_t)>("mkdirat")(folder, name, mode);
}
}
