#include "host/state_folder.h"

#include <cstdlib>

namespace doccam::host {

std::filesystem::path stateFolder() {
    const char* const state = std::getenv("XDG_STATE_HOME"); // NOLINT(concurrency-mt-unsafe)
    if (state != nullptr && *state == '/') {
        return std::filesystem::path(state) / "doccam";
    }
    const char* const home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe)
    return home != nullptr && *home == '/' ? std::filesystem::path(home) / ".local/state/doccam"
                                           : std::filesystem::path();
}

} // namespace doccam::host
