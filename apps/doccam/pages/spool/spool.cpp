#include "pages/spool/spool.h"

#include "host/failure.h"
#include "host/state_folder.h"
#include "host/texts.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <system_error>
#include <utility>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFolder = "spool";
// Folders that are being made or removed; hidden, so that they are no documents.
constexpr const char* kUnfinished = ".new-";
constexpr const char* kGone = ".gone-";
constexpr std::string_view kPattern = "00000000-000000-000000-xxxxxx";

[[noreturn]] void failWithoutPlace(const fs::path& path) {
    throw Failure(kFileFailed, "Pages cannot be kept in " + path.string() + " (" +
                                   std::strerror(errno) +
                                   "); let XDG_STATE_HOME name another place, or add --no-spool.");
}

[[noreturn]] void failWithout(const std::string& name) {
    throw Failure(kNothingFound, "The spool has no document " + name +
                                     "; doccam spool list shows which there are.");
}

[[noreturn]] void failAsInUse(const std::string& name) {
    throw Failure(kFileFailed,
                  "The document " + name + " is in use by another doccam; end that one first.");
}

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

bool isDocumentName(const std::string& name) {
    return name.size() == kPattern.size() &&
           std::equal(name.begin(), name.end(), kPattern.begin(), fits);
}

std::string newName() {
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

PrivateFolder openSpool(const fs::path& path) {
    return PrivateFolder(path.string());
}

// Files that a process did not finish, or removed from the manifest but no more from the disk.
void sweep(const PrivateFolder& folder, const Manifest& manifest) {
    for (const std::string& name : folder.names()) {
        const bool isPage = std::any_of(manifest.pages.begin(), manifest.pages.end(),
                                        [&](const KeptPage& page) { return page.frame == name; });
        if (!isPage && name != kManifestFile && name != kLockFile) {
            folder.remove(name);
        }
    }
}

std::string sized(std::uint64_t bytes) {
    return std::to_string(bytes >> 20) + " MiB";
}

bool isSaved(const SpoolEntry& entry) {
    return entry.manifest && entry.manifest->saved != 0 && !entry.inUse;
}

// Nothing would be lost with it.
bool isEmpty(const SpoolEntry& entry) {
    return entry.manifest && entry.manifest->pages.empty();
}

bool looksLikeAFrame(const UniqueFd& file) {
    std::array<char, 3> start{};
    const ssize_t count = file.isOpen() ? pread(file.get(), start.data(), start.size(), 0) : 0;
    const std::string_view bytes(start.data(), start.size());
    return count == static_cast<ssize_t>(start.size()) &&
           (bytes == "\xFF\xD8\xFF" || bytes == "\x89PN");
}

SpoolEntry described(const PrivateFolder& spool, const fs::path& path, const std::string& name) {
    const PrivateFolder folder = spool.folder(name);
    SpoolEntry entry{.name = name,
                     .folder = path / name,
                     .inUse = folder.isLocked(kLockFile),
                     .bytes = folder.bytes(),
                     .manifest = readManifest(folder)};
    if (entry.manifest) {
        for (const KeptPage& page : entry.manifest->pages) {
            if (!looksLikeAFrame(folder.file(page.frame))) {
                entry.damaged.push_back(page.frame);
            }
        }
    }
    return entry;
}

} // namespace

SpoolLimits spoolLimits() {
    constexpr std::uint64_t kMost = 1'000'000;
    SpoolLimits limits;
    // NOLINTNEXTLINE(concurrency-mt-unsafe)
    if (const char* const text = std::getenv("DOCCAM_SPOOL_MEGABYTES")) {
        const auto megabytes = parseNumber<std::uint64_t>(text);
        if (!megabytes || *megabytes < 1 || *megabytes > kMost) {
            throw Failure(kUsage, "DOCCAM_SPOOL_MEGABYTES is no integer from 1 to 1000000.");
        }
        limits.bytes = *megabytes << 20;
    }
    return limits;
}

Spool::Spool(const SpoolLimits& limits)
  : path_(stateFolder() / kFolder)
  , limits_(limits) {
    if (path_.is_relative()) {
        throw Failure(kFileFailed, "There is no place to keep pages; let XDG_STATE_HOME name one, "
                                   "or add --no-spool.");
    }
    std::error_code ignored;
    fs::create_directories(path_.parent_path(), ignored);
    mkdir(path_.c_str(), S_IRWXU);
    if (!openSpool(path_).isOpen()) {
        failWithoutPlace(path_);
    }
    clearOld();
}

std::vector<SpoolEntry> Spool::list() const {
    const PrivateFolder spool = openSpool(path_);
    std::vector<std::string> names = spool.names();
    std::sort(names.begin(), names.end());
    std::vector<SpoolEntry> entries;
    for (const std::string& name : names) {
        if (isDocumentName(name)) {
            entries.push_back(described(spool, path_, name));
        }
    }
    return entries;
}

void Spool::clearOld() const {
    constexpr std::int64_t kSoonFinished = 3600;
    const std::int64_t now = std::time(nullptr);
    for (const SpoolEntry& entry : list()) {
        const bool isOld = isSaved(entry) && now - entry.manifest->saved > limits_.savedFor.count();
        if (isOld || isEmpty(entry)) {
            clearIfIdle(entry.name);
        }
    }
    const PrivateFolder spool = openSpool(path_);
    for (const std::string& name : spool.names()) {
        if (name.starts_with(kGone) ||
            (name.starts_with(kUnfinished) && now - spool.changed(name) > kSoonFinished)) {
            spool.removeFolder(name);
        }
    }
}

// The oldest saved documents make room; unsaved ones never do.
void Spool::makeRoom(std::uint64_t bytes) const {
    const std::vector<SpoolEntry> entries = list();
    std::uint64_t used = bytes;
    for (const SpoolEntry& entry : entries) {
        used += entry.bytes;
    }
    for (const SpoolEntry& entry : entries) {
        if (used > limits_.bytes && isSaved(entry) && clearIfIdle(entry.name)) {
            used -= entry.bytes;
        }
    }
    if (used > limits_.bytes) {
        throw Failure(kFileFailed,
                      "The page is not kept, as unsaved documents take all of the " +
                          sized(limits_.bytes) +
                          " that the spool may have; doccam spool list shows them, doccam spool "
                          "resume saves them, DOCCAM_SPOOL_MEGABYTES allows more.");
    }
}

std::unique_ptr<PageDocument> Spool::create(const DocumentPlan& plan) const {
    const PrivateFolder spool = openSpool(path_);
    const std::string name = newName();
    const std::string unfinished = kUnfinished + name;
    Manifest manifest{plan};
    if (!spool.makeFolder(unfinished)) {
        failWithoutPlace(path_);
    }
    PrivateFolder folder = spool.folder(unfinished);
    UniqueFd lock = folder.lock(kLockFile);
    if (!lock.isOpen() || !writeManifest(folder, manifest) || !spool.rename(unfinished, name)) {
        const int reason = errno;
        spool.removeFolder(unfinished);
        errno = reason;
        failWithoutPlace(path_);
    }
    return documentOf(name, std::move(folder), std::move(lock), std::move(manifest));
}

std::unique_ptr<PageDocument> Spool::open(const std::string& name) const {
    PrivateFolder folder = isDocumentName(name) ? openSpool(path_).folder(name) : PrivateFolder();
    if (!folder.isOpen()) {
        failWithout(name);
    }
    UniqueFd lock = folder.lock(kLockFile);
    if (!lock.isOpen()) {
        failAsInUse(name);
    }
    auto manifest = readManifest(folder);
    if (!manifest) {
        throw Failure(kFileFailed, "The document " + name +
                                       " has a damaged list of pages; its frames are in " +
                                       (path_ / name).string() + ".");
    }
    sweep(folder, *manifest);
    return documentOf(name, std::move(folder), std::move(lock), *std::move(manifest));
}

std::unique_ptr<PageDocument> Spool::documentOf(const std::string& name, PrivateFolder folder,
                                                UniqueFd lock, Manifest manifest) const {
    return std::make_unique<PageDocument>(
        name, std::move(folder), std::move(lock), std::move(manifest),
        [spool = *this](std::uint64_t bytes) { spool.makeRoom(bytes); });
}

std::string Spool::newestUnsaved() const {
    std::string newest;
    for (const SpoolEntry& entry : list()) {
        if (entry.manifest && entry.manifest->saved == 0 && !isEmpty(entry) && !entry.inUse) {
            newest = entry.name;
        }
    }
    return newest;
}

void Spool::clear(const std::string& name) const {
    if (!isDocumentName(name) || !openSpool(path_).folder(name).isOpen()) {
        failWithout(name);
    }
    if (!clearIfIdle(name)) {
        failAsInUse(name);
    }
}

bool Spool::clearIfIdle(const std::string& name) const {
    const PrivateFolder spool = openSpool(path_);
    const PrivateFolder folder = spool.folder(name);
    const UniqueFd lock = folder.lock(kLockFile);
    if (!lock.isOpen()) {
        return false;
    }
    // Gone for others at once, whatever happens to this process.
    const std::string gone = kGone + name;
    if (spool.rename(name, gone)) {
        spool.removeFolder(gone);
    }
    return true;
}

} // namespace doccam::host
