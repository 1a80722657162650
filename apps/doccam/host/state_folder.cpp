#include "host/state_folder.h"

#include <cstdlib>

namespace doccam::host {

namespace {

// The folder that the variable names, or that in the user's home.
std::filesystem::path folderOf(const char* variable, const char* inHome) {
    const char* const named = std::getenv(variable); // NOLINT(concurrency-mt-unsafe)
    if (named != nullptr && *named == '/') {
        return std::filesystem::path(named) / "doccam";
    }
    const char* const home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe)
    return home != nullptr && *home == '/' ? std::filesystem::path(home) / inHome / "doccam"
                                           : std::filesystem::path();
}

} // namespace

std::filesystem::path stateFolder() {
    return folderOf("XDG_STATE_HOME", ".local/state");
}

std::filesystem::path configFolder() {
    return folderOf("XDG_CONFIG_HOME", ".config");
}

} // namespace doccam::host
