#include "discovery/camera_name.h"

#include "base/device_node.h"
#include "discovery/device_enumeration.h"
#include "discovery/split_text.h"
#include "state/library_state.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstring>

namespace doccam {
namespace {

std::string cardName(int descriptor) {
    v4l2_capability capability{};
    ioctl(descriptor, VIDIOC_QUERYCAP, &capability);
    const auto* card = reinterpret_cast<const char*>(capability.card);
    // A driver may fill the field to its last byte.
    return {card, strnlen(card, sizeof capability.card)};
}

std::string displayName(const std::string& card, int index) {
    const std::vector<std::string> pieces = splitText(card, ":");
    if (pieces.empty()) {
        return "USB Camera" + std::to_string(index);
    }
    return pieces.size() >= 2 ? pieces[1] : pieces[0];
}

} // namespace

const char* cameraName(int index) {
    LibraryState& library = state();
    if (!cameraExists(index)) {
        return nullptr;
    }
    if (library.session.cam_fd != kNoDescriptor) {
        close(library.session.cam_fd);
    }
    library.session.cam_fd =
        openDeviceNode(library.discovery.devices[static_cast<std::size_t>(index)].c_str());
    if (library.session.cam_fd == kNoDescriptor) {
        return nullptr;
    }
    const std::string card = cardName(library.session.cam_fd);
    close(library.session.cam_fd);
    library.session.cam_fd = kNoDescriptor;
    library.discovery.cameraName = displayName(card, index);
    return library.discovery.cameraName.c_str();
}

} // namespace doccam
