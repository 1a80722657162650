#include "host/virtual_camera.h"

#include "host/failure.h"
#include "streams/input_file.h"

#include <link.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

// Set for the process under the launcher, which would otherwise start another launcher.
constexpr const char* kUnderLauncher = "DOCCAM_UNDER_VIRTUALCAM";
constexpr const char* kPreload = "/libdoccam-virtualcam.so";

// Whether this process really has the cameras, regardless of its environment.
bool hasVirtualCameras() {
    const auto isPreload = [](dl_phdr_info* library, std::size_t /*size*/, void* /*unused*/) {
        return std::string_view(library->dlpi_name).ends_with(kPreload) ? 1 : 0;
    };
    return dl_iterate_phdr(isPreload, nullptr) != 0;
}

// The launcher keeps the device tree there.
void requireTemporaryFolder() {
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    if (error || access(folder.c_str(), W_OK | X_OK) != 0) {
        throw Failure(kUsage, "No temporary files can be made where TMPDIR says; let it name a "
                              "folder that can be written to.");
    }
}

fs::path ownPath() {
    return fs::read_symlink("/proc/self/exe");
}

// Searches the build folder and an installed tree.
fs::path findLauncher() {
    const fs::path folder = ownPath().parent_path();
    for (const char* candidate : {DOCCAM_LAUNCHER_FROM_BUILD, DOCCAM_LAUNCHER_FROM_BIN}) {
        std::error_code ignored;
        if (fs::path launcher = folder / candidate; fs::exists(launcher, ignored)) {
            return launcher.lexically_normal();
        }
    }
    throw Failure(kNoCamera, "The virtual camera is not installed with this program; install it "
                             "whole, or leave out --virtual.");
}

std::vector<std::string> launcherCommand(const VirtualCameraRequest& request, char** argv) {
    std::vector<std::string> command{findLauncher().string()};
    if (!request.photo.empty()) {
        requireInputFile(request.photo);
        command.insert(command.end(), {"--photo", request.photo});
    }
    if (request.sheetFrames > 0) {
        command.insert(command.end(), {"--sheet-frames", std::to_string(request.sheetFrames)});
    }
    command.insert(command.end(), {"--", ownPath().string()});
    for (char** argument = argv + 1; *argument != nullptr; ++argument) {
        command.emplace_back(*argument);
    }
    return command;
}

} // namespace

void moveUnderVirtualCamera(const VirtualCameraRequest& request, char** argv) {
    if (std::getenv(kUnderLauncher) != nullptr) {
        if (!hasVirtualCameras()) {
            throw Failure(kNoCamera, std::string("The virtual cameras are not there, although ") +
                                         kUnderLauncher +
                                         " is set; unset it and start doccam again.");
        }
        return;
    }
    requireTemporaryFolder();
    std::vector<std::string> command = launcherCommand(request, argv);
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (std::string& argument : command) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    setenv(kUnderLauncher, "1", 1);
    execv(arguments[0], arguments.data());
    throw Failure(kNoCamera, "The virtual camera's launcher " + command[0] +
                                 " cannot be started (" + std::strerror(errno) +
                                 "); install it again.");
}

std::vector<fs::path> virtualCameraFolders() {
    std::vector<fs::path> folders;
    if (const char* tree = std::getenv("UMOCKDEV_DIR")) {
        folders.emplace_back(tree);
        if (const char* control = std::getenv("DOCCAM_VIRTUALCAM_CONTROL")) {
            folders.push_back(fs::absolute(control).parent_path());
        }
    }
    return folders;
}

} // namespace doccam::host
