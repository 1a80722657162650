#include "serve/private_folder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace doccam::serve {

PrivateFolder::PrivateFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "doccam-pages-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "no folder for the pages: " + name);
    }
    path_ = name;
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace doccam::serve
