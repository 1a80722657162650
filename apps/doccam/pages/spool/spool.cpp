#include "pages/spool/spool.h"

#include "host/failure.h"
#include "host/state_folder.h"
#include "host/texts.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <set>
#include <system_error>
#include <utility>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFolder = "spool";
// Folders that are being made or removed; hidden, so that they are no documents.
constexpr const char* kUnfinished = ".new-";
constexpr const char* kGone = ".gone-";

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

PrivateFolder openSpool(const fs::path& path) {
    return PrivateFolder(path.string());
}

// Files that a process did not finish, or removed from the manifest but no more from the disk.
void sweep(const PrivateFolder& folder, const Manifest& manifest) {
    std::set<std::string> frames;
    for (const KeptPage& page : manifest.pages) {
        frames.insert(page.frame);
    }
    for (const RemovedPage& removed : manifest.removed) {
        frames.insert(removed.page.frame);
    }
    for (const std::string& name : folder.names()) {
        if (!frames.contains(name) && name != kManifestFile && name != kLockFile) {
            folder.remove(name);
        }
    }
}

std::string sized(std::uint64_t bytes) {
    return std::to_string(bytes >> 20) + " MiB";
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
            entries.push_back(describedEntry(spool, path_, name));
        }
    }
    return entries;
}

void Spool::clearOld() const {
    constexpr std::int64_t kSoonFinished = 3600;
    const std::int64_t now = std::time(nullptr);
    for (const SpoolEntry& entry : list()) {
        const bool isOld =
            entry.isSaved() && now - entry.manifest->saved > limits_.savedFor.count();
        if (isOld || entry.isEmpty()) {
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
        if (used > limits_.bytes && entry.isSaved() && clearIfIdle(entry.name)) {
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
    const std::string name = newDocumentName();
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

std::string Spool::newestUnsaved(std::optional<PageTaker> taker) const {
    std::string newest;
    for (const SpoolEntry& entry : list()) {
        if (entry.isLeft() && !entry.manifest->pages.empty() &&
            entry.manifest->plan.taker == taker.value_or(entry.manifest->plan.taker)) {
            newest = entry.name;
        }
    }
    return newest;
}

std::unique_ptr<PageDocument> Spool::takeUp(PageTaker taker) const {
    const std::vector<SpoolEntry> entries = list();
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        if (!entry->isLeft() || entry->isEmpty() || entry->manifest->plan.taker != taker) {
            continue;
        }
        try {
            auto document = open(entry->name);
            if (!document->isSaved()) {
                return document;
            }
        } catch (const Failure&) { // another process has taken it since it was listed
        }
    }
    return nullptr;
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
