#include "discovery/device_node.h"

#include <fcntl.h>

namespace doccam {

int openDeviceNode(const char* path) {
    const int descriptor = open(path, O_RDWR);
    if (descriptor != -1) {
        fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    }
    return descriptor;
}

} // namespace doccam
