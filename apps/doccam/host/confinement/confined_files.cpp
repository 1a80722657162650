// Restricting file access with Landlock.
#include "base/files/file_placement.h"
#include "base/modules/module.h"
#include "base/unique_fd.h"
#include "host/confinement/confinement.h"
#include "host/virtual_camera.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <cstdint>
#include <cstdlib>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

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
// Neither sockets nor moving to other folders.
constexpr std::uint64_t kKeep = kRead | LANDLOCK_ACCESS_FS_WRITE_FILE |
                                LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR;
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

// A list of allowed paths, each including everything below it; missing paths are ignored. Has no
// effect if the kernel lacks Landlock, or its version cannot rename between folders.
class FileRules {
  public:
    FileRules() {
        const long version = landlockVersion();
        if (version < kFirstVersion) {
            return;
        }
        landlock_ruleset_attr attributes{};
        attributes.handled_access_fs = handled_ = rightsKnownTo(version);
        ruleset_.reset(static_cast<int>(
            syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
    }

    void allow(const fs::path& path, std::uint64_t rights) const {
        const UniqueFd place(ruleset_.isOpen() ? open(path.c_str(), O_PATH | O_CLOEXEC) : -1);
        if (!place.isOpen()) {
            return;
        }
        const auto status = statusOf(place.get());
        const bool folder = status && S_ISDIR(status->st_mode);
        landlock_path_beneath_attr rule{};
        rule.allowed_access = rights & handled_ & (folder ? ~0ULL : kOfFiles);
        rule.parent_fd = place.get();
        // Fails for pipes and the like, which Landlock does not restrict anyway.
        syscall(SYS_landlock_add_rule, ruleset_.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
    }

    // Removing the folder needs a right on its parent; only removing empty folders is allowed
    // there.
    void allowWriting(const fs::path& folder, std::uint64_t others = 0) const {
        allow(folder, kWrite | others);
        allow(folder / "..", LANDLOCK_ACCESS_FS_REMOVE_DIR);
    }

    // Denies everything else to the calling thread and those it starts from now on. False if it is
    // not possible.
    bool enforce() const {
        return ruleset_.isOpen() && prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
               syscall(SYS_landlock_restrict_self, ruleset_.get(), 0) == 0;
    }

  private:
    std::uint64_t handled_ = 0;
    UniqueFd ruleset_;
};

// Tables of time zones and character sets, the number of processors, user and host names, and the
// libraries that the C library loads for them.
constexpr const char* kSystemPlaces[] = {
    "/usr",       "/etc/resolv.conf", "/lib",          "/lib64",       "/etc",      "/sys",
    "/proc/self", "/proc/cpuinfo",    "/proc/meminfo", "/proc/sys/vm", "/proc/stat"};

void addSystem(const FileRules& rules) {
    for (const char* place : kSystemPlaces) {
        rules.allow(place, kRead);
    }
    rules.allow(modulesFolder(), kRead);
    // It may be a link to another folder.
    for (const std::string module : {kFormatsModule, kDocumentsModule}) {
        rules.allow(fs::path(modulesFolder()) / (module + ".so"), kRead);
    }
    for (const char* device : {"/dev/null", "/dev/zero", "/dev/random", "/dev/urandom"}) {
        rules.allow(device, kRead | kUseDevice);
    }
}

void addCameras(const FileRules& rules) {
    // A camera plugged in again is a new node, to which no rule for the old one would apply.
    rules.allow("/dev", kRead | kUseDevice);
    rules.allow("/run/udev", kRead);
    if (const char* models = std::getenv("DOCCAM_MODELS")) {
        rules.allow(models, kRead);
    }
}

void addReach(const FileRules& rules, const Reach& reach) {
    for (const fs::path& path : reach.read) {
        rules.allow(path, kRead);
    }
    for (const fs::path& folder : reach.write) {
        rules.allowWriting(folder);
    }
    for (const fs::path& folder : reach.keep) {
        rules.allow(folder, kKeep);
    }
    if (reach.cameras) {
        addCameras(rules);
    }
    for (const fs::path& folder : virtualCameraFolders()) {
        // Virtual cameras show pictures from any path.
        rules.allow("/", kRead);
        rules.allowWriting(folder, kUseDevice);
    }
}

} // namespace

void confineFiles(const Reach& reach, Interrupt& interrupt) {
    if (!DOCCAM_CONFINED) {
        return;
    }
    const FileRules rules;
    addSystem(rules);
    addReach(rules, reach);
    if (rules.enforce()) {
        interrupt.waitOnNewThread();
    }
}

} // namespace doccam::host
