#include "scratch_file.h"

#include "support/scratch_folder.h"

#include <fstream>

namespace doccam::test {

std::string scratchPath(const std::string& name) {
    static const ScratchFolder folder;
    return folder.file(name);
}

std::string writeScratchFile(const std::string& name, std::span<const unsigned char> bytes) {
    const std::string path = scratchPath(name);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return path;
}

} // namespace doccam::test
