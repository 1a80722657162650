#include "host/confinement/file_rules.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace doccam::host {
namespace {

// Rights newer than the headers of Debian 12.
constexpr std::uint64_t kTruncate = 1ULL << 14;
constexpr std::uint64_t kSteerDevice = 1ULL << 15;

// The first version that can rename between folders.
constexpr long kFirstVersion = 2;
constexpr long kVersionWithTruncate = 3;
constexpr long kVersionWithSteering = 5;

constexpr std::uint64_t kRead = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t kWrite =
    kRead | LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_MAKE_REG |
    LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
    LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_REFER | kTruncate;
constexpr std::uint64_t kUseDevice = LANDLOCK_ACCESS_FS_WRITE_FILE | kSteerDevice;
// The rights that a rule for a file, as opposed to a folder, may contain.
constexpr std::uint64_t kOfFiles = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_WRITE_FILE |
                                   LANDLOCK_ACCESS_FS_READ_FILE | kTruncate | kSteerDevice;
constexpr std::uint64_t kEverything =
    ((LANDLOCK_ACCESS_FS_REFER << 1) - 1) | kTruncate | kSteerDevice;

// The C library has no wrappers for these.
long landlockVersion() {
    return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

std::uint64_t rightsKnownTo(long version) {
    return kEverything & (version < kVersionWithTruncate ? ~kTruncate : ~0ULL) &
           (version < kVersionWithSteering ? ~kSteerDevice : ~0ULL);
}

} // namespace

FileRules::FileRules() {
    if (!supported()) {
        return;
    }
    landlock_ruleset_attr attributes{};
    attributes.handled_access_fs = handled_ = rightsKnownTo(landlockVersion());
    ruleset_ =
        static_cast<int>(syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0));
}

FileRules::~FileRules() {
    if (ruleset_ >= 0) {
        close(ruleset_);
    }
}

bool FileRules::supported() {
    return landlockVersion() >= kFirstVersion;
}

void FileRules::allowReading(const std::filesystem::path& path) {
    allow(path, kRead);
}

// Removing the folder needs a right on its parent; only removing empty folders is allowed there.
void FileRules::allowWriting(const std::filesystem::path& folder) {
    allow(folder, kWrite);
    allow(folder / "..", LANDLOCK_ACCESS_FS_REMOVE_DIR);
}

void FileRules::allowUsingDevices(const std::filesystem::path& path) {
    allow(path, kUseDevice);
}

void FileRules::allow(const std::filesystem::path& path, std::uint64_t rights) const {
    const int place = ruleset_ < 0 ? -1 : open(path.c_str(), O_PATH | O_CLOEXEC);
    if (place < 0) {
        return;
    }

    struct stat status {};

    const bool folder = fstat(place, &status) == 0 && S_ISDIR(status.st_mode);
    landlock_path_beneath_attr rule{};
    rule.allowed_access = rights & handled_ & (folder ? ~0ULL : kOfFiles);
    rule.parent_fd = place;
    // Fails for pipes and the like, which Landlock does not restrict anyway.
    syscall(SYS_landlock_add_rule, ruleset_, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
    close(place);
}

bool FileRules::enforce() const {
    return ruleset_ >= 0 && prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           syscall(SYS_landlock_restrict_self, ruleset_, 0) == 0;
}

} // namespace doccam::host
