// Seals a module after it is linked.
//   doccam-seal MODULE
#include "base/modules/module_seal.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("Usage: doccam-seal MODULE\n", stderr);
        return 2;
    }
    std::fstream file(argv[1], std::ios::binary | std::ios::in | std::ios::out);
    std::vector<char> contents(std::istreambuf_iterator<char>(file), {});
    auto* const bytes = reinterpret_cast<unsigned char*>(contents.data());
    if (!doccam::sealModule({bytes, contents.size()})) {
        std::fprintf(stderr, "doccam-seal: %s is no module\n", argv[1]);
        return 1;
    }
    file.clear();
    file.seekp(0);
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    return file.flush() ? 0 : 1;
}
