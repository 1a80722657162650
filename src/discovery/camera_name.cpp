#include "discovery/camera_name.h"

#include "base/unique_fd.h"
#include "discovery/device_enumeration.h"
#include "state/discovery.h"

#include <linux/videodev2.h>
#include <sys/ioctl.h>

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

std::vector<std::string> splitText(std::string text, const std::string& pattern) {
    if (pattern.empty()) {
        return {std::move(text)};
    }
    std::vector<std::string> pieces;
    text += pattern;
    std::size_t start = 0;
    for (std::size_t found = text.find(pattern); found != std::string::npos;
         found = text.find(pattern, start)) {
        pieces.push_back(text.substr(start, found - start));
        start = found + pattern.size();
    }
    return pieces;
}

const char* cameraName(record::Discovery& discovery, UniqueFd& node, int index) {
    if (!cameraExists(discovery, index)) {
        return nullptr;
    }
    node.reset();
    node.reset(openDeviceNode(discovery, index));
    if (!node.isOpen()) {
        return nullptr;
    }
    const std::string card = cardName(node.get());
    node.reset();
    discovery.cameraName = displayName(card, index);
    return discovery.cameraName.c_str();
}

} // namespace doccam
