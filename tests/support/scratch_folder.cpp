#include "support/scratch_folder.h"

#include <cstdlib>
#include <stdexcept>

namespace doccam::test {

ScratchFolder::ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "doccam-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("cannot create a scratch folder");
    }
    path_ = name;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace doccam::test
