// The library's modules lie beside it.
#include "base/modules/module.h"

namespace {

const std::string folder = doccam::modulesBeside(&folder);

} // namespace

std::string doccam::modulesFolder() {
    return folder;
}
