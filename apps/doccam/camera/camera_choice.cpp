#include "camera/camera_choice.h"

#include "camera/cameras.h"
#include "host/failure.h"
#include "host/texts.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string_view>
#include <vector>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

constexpr int kMaximumCameras = 9;

bool isNumber(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char letter) {
        return std::isdigit(letter) != 0;
    });
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

// Links such as those of /dev/v4l/by-id name a node, too.
bool isSameNode(fs::path path, const std::string& node) {
    constexpr int kLongestChain = 8;
    for (int link = 0; path.lexically_normal() != node; ++link) {
        std::error_code error;
        const fs::path target = fs::read_symlink(path, error);
        if (error || link == kLongestChain) {
            return false;
        }
        path = path.parent_path() / target;
    }
    return true;
}

std::vector<Camera> matching(const std::vector<Camera>& cameras, const auto& matches) {
    std::vector<Camera> found;
    std::copy_if(cameras.begin(), cameras.end(), std::back_inserter(found), matches);
    return found;
}

// A name given in full is that camera's, even if it is a part of another's.
std::vector<Camera> named(const std::vector<Camera>& cameras, const std::string& text) {
    const std::string wanted = lowerCase(text);
    const auto whole =
        matching(cameras, [&](const Camera& camera) { return lowerCase(camera.name) == wanted; });
    return !whole.empty() ? whole : matching(cameras, [&](const Camera& camera) {
        return lowerCase(camera.name).find(wanted) != std::string::npos;
    });
}

std::vector<Camera> meant(const std::vector<Camera>& cameras, const std::string& text) {
    if (text.starts_with('/')) {
        return matching(cameras,
                        [&](const Camera& camera) { return isSameNode(text, camera.node); });
    }
    const auto byId =
        matching(cameras, [&](const Camera& camera) { return camera.usbId == lowerCase(text); });
    return byId.empty() ? named(cameras, text) : byId;
}

} // namespace

int chosenCamera(const std::string& text) {
    if (isNumber(text)) {
        return parseNumber<int>(text).value_or(kMaximumCameras);
    }
    const std::vector<Camera> cameras = attachedCameras();
    if (cameras.empty()) {
        failWithoutCamera();
    }
    const std::vector<Camera> found = meant(cameras, text);
    if (found.empty()) {
        throw Failure(kNoCamera, "There is no camera \"" + text + "\"; choose one of " +
                                     listed(cameras, titleOf) + ".");
    }
    if (found.size() > 1) {
        throw Failure(kUsage, "Several cameras are meant by \"" + text + "\"; choose one of " +
                                  listed(found, titleOf) + ".");
    }
    return found.front().index;
}

std::string refuseOddCamera(const std::string& text) {
    if (text.empty()) {
        return "a camera is missing";
    }
    const bool tooLarge =
        isNumber(text) && parseNumber<int>(text).value_or(kMaximumCameras) >= kMaximumCameras;
    return tooLarge ? "\"" + text + "\" is no number from 0 to 8" : "";
}

} // namespace doccam::host
