#include "base/modules/module.h"

#include "base/files/harmless_text.h"
#include "base/modules/module_seal.h"
#include "base/unique_fd.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

namespace doccam {
namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw ModuleError("The module " + harmlessText(path) + " " + reason +
                      "; install doccam again.");
}

// None if it is not a file that can be read whole.
std::vector<unsigned char> contentsOf(int descriptor) {
    struct stat status {};

    constexpr off_t kMaximumBytes = 1 << 28;
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > kMaximumBytes) {
        return {};
    }
    std::vector<unsigned char> contents(static_cast<std::size_t>(status.st_size));
    std::size_t count = 0;
    while (count < contents.size()) {
        const ssize_t got = read(descriptor, contents.data() + count, contents.size() - count);
        if (got == 0 || (got < 0 && errno != EINTR)) {
            return {};
        }
        count += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
    }
    return contents;
}

// The loader would run a damaged file's code.
void requireIntact(const std::string& path) {
    // A pipe in its place must not block.
    const UniqueFd file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen()) {
        fail(path, errno == ENOENT ? "is missing"
                                   : std::string("cannot be read (") + std::strerror(errno) + ")");
    }
    std::vector<unsigned char> contents = contentsOf(file.get());
    if (!isSealedModule(contents)) {
        fail(path, "is damaged");
    }
}

std::string pathOf(const char* name) {
    const std::string folder = modulesFolder();
    // Never a path of the working folder, which anybody may have filled.
    if (folder.empty()) {
        fail(name, "cannot be looked for, as the library's own folder is unknown");
    }
    return folder + "/" + name + ".so";
}

} // namespace

std::string modulesBeside(const void* address) noexcept try {
    Dl_info library{};
    if (dladdr(address, &library) == 0) {
        return {};
    }
    return std::filesystem::canonical(library.dli_fname).parent_path() / "doccam";

} catch (const std::exception&) {

    return {};
}

void checkModule(const char* name) {
    requireIntact(pathOf(name));
}

const ModuleHead& openModule(const char* name) {
    const std::string path = pathOf(name);
    requireIntact(path);
    void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        fail(path, std::string("cannot be loaded (") + harmlessText(dlerror()) + ")");
    }
    const auto* const table = static_cast<const ModuleHead*>(dlsym(module, "doccam_module"));
    if (table == nullptr) {
        fail(path, "is damaged");
    }
    if (std::strcmp(table->name, name) != 0) {
        fail(path, std::string("is the module ") + harmlessText(table->name));
    }
    if (std::strcmp(table->version, DOCCAM_MODULE_VERSION) != 0) {
        fail(path, std::string("is of version ") + harmlessText(table->version) +
                       ", the library of " DOCCAM_MODULE_VERSION);
    }
    return *table;
}

} // namespace doccam
