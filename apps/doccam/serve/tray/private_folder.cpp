#include "serve/tray/private_folder.h"

#include "host/failure.h"

#include <unistd.h>

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
    for (const auto& entry : std::filesystem::directory_iterator(path_, ignored)) {
        std::filesystem::remove_all(entry, ignored);
    }
    // Of the folder above, this is all that is left to a confined process.
    rmdir(path_.c_str());
}

} // namespace doccam::serve
