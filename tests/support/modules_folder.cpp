// The modules of the build, for tests that link the library's objects instead of the library.
#include "base/modules/module.h"

std::string doccam::modulesFolder() {
    return DOCCAM_MODULES_FOLDER;
}
