#include "doctor/node_holders.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <optional>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

std::optional<int> processNumber(const fs::path& folder) {
    const std::string name = folder.filename().string();
    int number = 0;
    const char* end = name.data() + name.size();
    const auto [stop, error] = std::from_chars(name.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

bool holds(const fs::path& process, const std::string& node) {
    std::error_code error;
    for (fs::directory_iterator entry(process / "fd", error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code vanished;
        if (fs::read_symlink(entry->path(), vanished) == node) {
            return true;
        }
    }
    return false;
}

std::string commandOf(const fs::path& process) {
    std::ifstream file(process / "comm");
    std::string name;
    std::getline(file, name);
    return name.empty() ? "a program" : name;
}

} // namespace

std::vector<Holder> holdersOf(const std::string& node, const std::string& processes) {
    std::vector<Holder> holders;
    std::error_code error;
    for (fs::directory_iterator entry(processes, error), end; !error && entry != end;
         entry.increment(error)) {
        const auto number = processNumber(entry->path());
        if (number && *number != getpid() && holds(entry->path(), node)) {
            holders.push_back({*number, commandOf(entry->path())});
        }
    }
    std::sort(holders.begin(), holders.end(),
              [](const Holder& a, const Holder& b) { return a.process < b.process; });
    return holders;
}

} // namespace doccam::host
