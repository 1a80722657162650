#include "serve/tray/private_folder.h"

#include "host/failure.h"

#include <cstdlib>
#include <string>
#include <system_error>

namespace doccam::serve {

PrivateFolder::PrivateFolder() {
    std::error_code error;
    const std::filesystem::path place = std::filesystem::temp_directory_path(error);
    std::string name = (place / "doccam-pages-XXXXXX").string();
    if (error || mkdtemp(name.data()) == nullptr) {
        throw host::Failure(host::kFileFailed,
                            "No folder for the pages can be made where temporary files lie; let "
                            "TMPDIR name another place.");
    }
    path_ = name;
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace doccam::serve
