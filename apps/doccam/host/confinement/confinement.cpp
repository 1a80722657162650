#include "host/confinement/confinement.h"

#include "host/confinement/call_filter.h"
#include "host/confinement/file_rules.h"
#include "host/own_output.h"
#include "host/virtual_camera.h"

#include <cstdlib>
#include <cstring>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

// Tables of time zones and character sets, the number of processors, user and host names, and the
// libraries that the C library loads for them.
constexpr const char* kSystemPlaces[] = {
    "/usr",       "/etc/resolv.conf", "/lib",          "/lib64",       "/etc",      "/sys",
    "/proc/self", "/proc/cpuinfo",    "/proc/meminfo", "/proc/sys/vm", "/proc/stat"};

void addSystem(FileRules& rules) {
    for (const char* place : kSystemPlaces) {
        rules.allowReading(place);
    }
    for (const char* device : {"/dev/null", "/dev/zero", "/dev/random", "/dev/urandom"}) {
        rules.allowReading(device);
        rules.allowUsingDevices(device);
    }
}

void addCameras(FileRules& rules) {
    // A camera plugged in again is a new node, to which no rule for the old one would apply.
    rules.allowReading("/dev");
    rules.allowUsingDevices("/dev");
    rules.allowReading("/run/udev");
    if (const char* models = std::getenv("DOCCAM_MODELS")) {
        rules.allowReading(models);
    }
}

void addReach(FileRules& rules, const Reach& reach) {
    for (const fs::path& path : reach.read) {
        rules.allowReading(path);
    }
    for (const fs::path& folder : reach.write) {
        rules.allowWriting(folder);
    }
    if (reach.cameras) {
        addCameras(rules);
    }
    for (const fs::path& folder : virtualCameraFolders()) {
        // Virtual cameras show pictures from any path.
        rules.allowReading("/");
        rules.allowWriting(folder);
        rules.allowUsingDevices(folder);
    }
}

CallGroups groupsFor(const Reach& reach) {
    return {.cameras = reach.cameras,
            .connections = reach.connections,
            .localSockets = !virtualCameraFolders().empty()};
}

} // namespace

void confine(const Reach& reach, Interrupt& interrupt) {
    confineFiles(reach, interrupt);
    confineCalls(reach);
}

void confineFiles(const Reach& reach, Interrupt& interrupt) {
    if (!DOCCAM_CONFINED) {
        return;
    }
    FileRules rules;
    addSystem(rules);
    addReach(rules, reach);
    if (rules.enforce()) {
        interrupt.waitOnNewThread();
    }
}

void confineCalls(const Reach& reach) {
    const int error = DOCCAM_CONFINED ? filterCalls(groupsFor(reach)) : 0;
    if (error != 0) {
        complain(std::string("The system does not let this process be confined (") +
                 std::strerror(error) + "); it goes on, and --no-confinement silences this.");
    }
}

} // namespace doccam::host
