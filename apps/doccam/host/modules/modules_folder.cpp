// The modules are those of the library that this program has loaded.
#include "base/modules/module.h"

#include <doccam/version.h>

namespace {

const std::string folder = doccam::modulesBeside(reinterpret_cast<const void*>(&doccam_version));

} // namespace

std::string doccam::modulesFolder() {
    return folder;
}
