#include "vm/camera/host_port.h"

#include <sys/socket.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace doccam::vm {
namespace {

const std::string kController = "/sys/devices/platform/vhci_hcd.0/";
constexpr int kFree = 4;
constexpr int kHighSpeed = 3;
constexpr int kFirstDevice = 1 << 16 | 1; // bus 1, device 1; any number above 0 will do

int freePort() {
    std::ifstream status(kController + "status");
    std::string line;
    while (std::getline(status, line)) {
        std::istringstream fields(line);
        std::string hub;
        int port = 0;
        int state = 0;
        if (fields >> hub >> port >> state && hub == "hs" && state == kFree) {
            return port;
        }
    }
    throw std::runtime_error("no free port in " + kController + "status");
}

} // namespace

UniqueFd connectDevice() {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        throw std::runtime_error("no socket pair");
    }
    UniqueFd device(ends[0]);
    const UniqueFd host(ends[1]);
    const int port = freePort();
    std::ofstream attach(kController + "attach");
    attach << port << ' ' << host.get() << ' ' << kFirstDevice + port << ' ' << kHighSpeed;
    if (!attach.flush()) {
        throw std::runtime_error("the kernel refuses a device at port " + std::to_string(port));
    }
    return device;
}

} // namespace doccam::vm
