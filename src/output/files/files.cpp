#include "output/files/files.h"

#include "base/handles/standard_file.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace doccam {

bool fileExists(const char* path) {
    return access(path, F_OK) == 0;
}

std::string lastBytes(const std::string& path, std::size_t count) {
    const StandardFile file(std::fopen(path.c_str(), "rbe"));
    if (!file || std::fseek(file.get(), 0, SEEK_END) != 0) {
        return {};
    }
    const long wanted = std::min(std::ftell(file.get()), static_cast<long>(count));
    if (wanted <= 0 || std::fseek(file.get(), -wanted, SEEK_END) != 0) {
        return {};
    }
    std::string bytes(static_cast<std::size_t>(wanted), '\0');
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    return bytes;
}

std::string homeFolder() {
    if (const passwd* entry = getpwuid(getuid()); entry != nullptr && entry->pw_dir != nullptr) {
        return entry->pw_dir;
    }
    const char* home = std::getenv("HOME");
    return home != nullptr && *home != '\0' ? home : "/tmp";
}

void removeFiles(const std::vector<std::string>& files) {
    for (const std::string& file : files) {
        if (fileExists(file.c_str())) {
            std::remove(file.c_str());
        }
    }
}

} // namespace doccam
