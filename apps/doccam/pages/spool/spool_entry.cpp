#include "pages/spool/spool_entry.h"

#include "base/unique_fd.h"
#include "pages/frame_file.h"
#include "pages/page_engine.h"
#include "pages/spool/page_document.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <random>
#include <string_view>

namespace doccam::host {
namespace {

constexpr std::string_view kPattern = "00000000-000000-000000-xxxxxx";

bool fits(char letter, char pattern) {
    const auto byte = static_cast<unsigned char>(letter);
    switch (pattern) {
    case '0':
        return std::isdigit(byte) != 0;
    case 'x':
        return std::isxdigit(byte) != 0;
    default:
        return letter == pattern;
    }
}

bool isWhole(const PrivateFolder& folder, const KeptPage& page) {
    const UniqueFd file = folder.file(page.frame);
    return file.isOpen() && isWholeFrame(file.get()) &&
           (page.origin.finished || !page.recipe.corners || isSound(*page.recipe.corners));
}

} // namespace

bool isDocumentName(const std::string& name) {
    return name.size() == kPattern.size() &&
           std::equal(name.begin(), name.end(), kPattern.begin(), fits);
}

std::string newDocumentName() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto part = std::chrono::duration_cast<std::chrono::microseconds>(
                          now - std::chrono::system_clock::from_time_t(seconds))
                          .count();
    std::tm time{};
    gmtime_r(&seconds, &time);
    std::array<char, 32> date{};
    std::strftime(date.data(), date.size(), "%Y%m%d-%H%M%S", &time);
    std::array<char, 64> name{};
    std::snprintf(name.data(), name.size(), "%s-%06d-%06x", date.data(), static_cast<int>(part),
                  std::random_device()() & 0xFFFFFFU);
    return name.data();
}

SpoolEntry describedEntry(const PrivateFolder& spool, const std::filesystem::path& path,
                          const std::string& name) {
    const PrivateFolder folder = spool.folder(name);
    SpoolEntry entry{.name = name,
                     .folder = path / name,
                     .inUse = folder.isLocked(kLockFile),
                     .bytes = folder.bytes(),
                     .manifest = readManifest(folder)};
    if (entry.manifest) {
        for (const KeptPage& page : entry.manifest->pages) {
            if (!isWhole(folder, page)) {
                entry.damaged.push_back(page.frame);
            }
        }
    }
    return entry;
}

} // namespace doccam::host
