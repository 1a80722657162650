// Reading the stored access token: a valid one is kept, anything else replaced.
#include "fuzz_target.h"
#include "scratch_file.h"
#include "serve/access/access.h"
#include "serve/access/token_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

bool isToken(const std::string& text) {
    return text.size() == doccam::serve::kTokenDigits &&
           std::all_of(text.begin(), text.end(), [](char letter) {
               return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'f');
           });
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    namespace fs = std::filesystem;
    using doccam::test::require;
    const fs::path folder = doccam::test::scratchPath("state");
    const fs::path file = folder / "serve-token";
    const std::string stored(reinterpret_cast<const char*>(data), size);
    fs::create_directories(folder);
    fs::remove(file);
    std::ofstream(file, std::ios::binary) << stored;
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    const std::string token = doccam::serve::keptToken(folder);
    require(isToken(token));
    require((token == stored) == isToken(stored));
    require(doccam::serve::keptToken(folder) == token);
    return 0;
}
