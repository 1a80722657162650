// Runs a fuzz target on stored inputs, without libFuzzer: replay FOLDER...
#include "fuzz_target.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

using doccam::test::Bytes;

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

// Prints the name first, so that it is known after a crash.
void replay(const std::filesystem::path& path) {
    std::fprintf(stderr, "%s\n", path.c_str());
    std::ifstream file(path, std::ios::binary);
    const Bytes read{std::istreambuf_iterator<char>(file), {}};
    const Bytes exact = doccam::test::exactCopy(read);
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

} // namespace

int main(int count, char** folders) {
    std::size_t inputs = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& path : filesIn(folders[i])) {
            replay(path);
            ++inputs;
        }
    }
    LLVMFuzzerTestOneInput(nullptr, 0);
    if (inputs == 0) {
        std::fputs("no inputs\n", stderr);
    }
    return inputs == 0 ? 1 : 0;
}
