#include "preload/registry.h"

#include "preload/lookup.h"
#include "preload/remote_cameras.h"
#include "scenario.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <utility>

namespace doccam::virtualcam {

constinit DescriptorSet virtualDescriptors;
constinit AddressSet virtualMappings;

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::vector<CameraDescription> camerasFromEnvironment() {
    try {
        const std::string path = environment("DOCCAM_VIRTUALCAM");
        std::vector<CameraDescription> cameras =
            path.empty() ? defaultCameras() : readScenario(path);
        const std::string photo = environment("DOCCAM_VIRTUALCAM_PHOTO");
        const std::string interval = environment("DOCCAM_VIRTUALCAM_INTERVAL");
        const std::string sheetFrames = environment("DOCCAM_VIRTUALCAM_SHEET_FRAMES");
        for (CameraDescription& camera : cameras) {
            camera.picture = photo.empty() ? camera.picture : photo;
            if (!interval.empty()) {
                camera.intervalMs = std::stoi(interval);
            }
            if (!sheetFrames.empty()) {
                camera.scene.sheetFrames = std::stoi(sheetFrames);
            }
        }
        return cameras;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "doccam-virtualcam: %s\n", error.what());
        return {};
    }
}

} // namespace

Registry& Registry::instance() {
    static Registry& registry = *new Registry;
    return registry;
}

void Registry::configure() {
    if (std::exchange(configured_, true)) {
        return;
    }
    for (const CameraDescription& description : camerasFromEnvironment()) {
        addLocked(description);
    }
    admitRemoteControl();
}

void Registry::clear() {
    const std::lock_guard lock(mutex_);
    configured_ = true;
    for (auto& [id, camera] : cameras_) {
        unplugLocked(camera);
    }
    cameras_.clear();
    log_.clear();
}

CameraId Registry::add(const CameraDescription& description) {
    const std::lock_guard lock(mutex_);
    configured_ = true;
    return addLocked(description);
}

CameraId Registry::addLocked(const CameraDescription& description) {
    const CameraId id = nextCamera_++;
    Camera camera;
    camera.description = description;
    camera.identity = {description.card,
                       description.busInfo.empty() ? defaultBusInfo(id) : description.busInfo};
    camera.source = std::make_shared<PictureSource>(description.picture, description.scene);
    plugLocked(cameras_[id] = std::move(camera));
    return id;
}

void Registry::remove(CameraId camera) {
    const std::lock_guard lock(mutex_);
    unplugLocked(at(camera));
    cameras_.erase(camera);
}

void Registry::plug(CameraId camera) {
    const std::lock_guard lock(mutex_);
    if (!at(camera).plugged) {
        plugLocked(at(camera));
    }
}

void Registry::plugLocked(Camera& camera) {
    camera.device =
        std::make_shared<CaptureDevice>(camera.description, camera.identity, camera.source);
    camera.plugged = true;
    camera.nodes.capture = lowestFreeNode();
    camera.nodes.metadata = lowestFreeNode();
    knownNodes_.insert(camera.nodes.capture);
    knownNodes_.insert(camera.nodes.metadata);
}

void Registry::unplug(CameraId camera) {
    const std::lock_guard lock(mutex_);
    unplugLocked(at(camera));
}

void Registry::unplugLocked(Camera& camera) {
    camera.device->unplug();
    camera.plugged = false;
    camera.nodes = {};
}

Camera Registry::camera(CameraId camera) {
    const std::lock_guard lock(mutex_);
    return at(camera);
}

Camera& Registry::at(CameraId camera) {
    configure();
    return cameras_.at(camera);
}

// As on a real system, a mapping keeps its node open.
bool Registry::held(int node) const {
    const auto uses = [&](const auto& entry) { return entry.second->node() == node; };
    return std::any_of(cameras_.begin(), cameras_.end(),
                       [&](const auto& entry) {
                           return entry.second.nodes.capture == node ||
                                  entry.second.nodes.metadata == node;
                       }) ||
           std::any_of(handles_.begin(), handles_.end(), uses) ||
           std::any_of(mappings_.begin(), mappings_.end(), uses);
}

int Registry::lowestFreeNode() const {
    int node = 0;
    while (held(node)) {
        ++node;
    }
    return node;
}

bool Registry::owns(int node) {
    const std::lock_guard lock(mutex_);
    configure();
    return knownNodes_.contains(node);
}

std::shared_ptr<Handle> Registry::createHandle(int node) {
    for (const auto& [id, camera] : cameras_) {
        const bool metadata = camera.nodes.metadata == node;
        if (metadata || camera.nodes.capture == node) {
            return std::make_shared<Handle>(nextClient_++, camera.device, camera.identity, node,
                                            metadata);
        }
    }
    return nullptr;
}

int Registry::open(int node, int flags) {
    const std::lock_guard lock(mutex_);
    const std::shared_ptr<Handle> handle = createHandle(node);
    int error = ENOENT;
    int descriptor = -1;
    if (handle) {
        error = handle->device().unplugged() ? ENODEV : handle->device().noteCall("open");
    }
    if (error == 0) {
        descriptor = handle->createDescriptor(flags);
        error = descriptor < 0 ? errno : 0;
    }
    if (descriptor >= 0) {
        handles_[descriptor] = handle;
        virtualDescriptors.insert(descriptor);
    }
    log_.note("open", node, descriptor, descriptor, error);
    errno = error;
    return descriptor;
}

std::shared_ptr<Handle> Registry::find(int descriptor) {
    const std::lock_guard lock(mutex_);
    const auto found = handles_.find(descriptor);
    return found == handles_.end() ? nullptr : found->second;
}

void Registry::share(int descriptor, int copy) {
    const std::lock_guard lock(mutex_);
    const auto found = handles_.find(descriptor);
    if (found != handles_.end() && copy >= 0 && copy < DescriptorSet::kLimit) {
        const std::shared_ptr<Handle> handle = found->second;
        handle->addDescriptor(copy);
        handles_[copy] = handle;
        virtualDescriptors.insert(copy);
    }
}

void Registry::forget(int descriptor) {
    std::shared_ptr<Handle> handle; // may be destroyed here, after the lock is released
    const std::lock_guard lock(mutex_);
    const auto found = handles_.find(descriptor);
    if (found != handles_.end()) {
        handle = found->second;
        handle->dropDescriptor(descriptor);
        virtualDescriptors.erase(descriptor);
        handles_.erase(found);
    }
}

int Registry::openHandles() {
    const std::lock_guard lock(mutex_);
    return static_cast<int>(handles_.size());
}

void Registry::noteMapping(void* address, const std::shared_ptr<Handle>& handle) {
    const std::lock_guard lock(mutex_);
    if (virtualMappings.insert(address)) {
        mappings_[address] = handle;
    }
}

std::shared_ptr<Handle> Registry::mappedBy(void* address) {
    const std::lock_guard lock(mutex_);
    const auto found = mappings_.find(address);
    return found == mappings_.end() ? nullptr : found->second;
}

void Registry::forgetMapping(void* address) {
    std::shared_ptr<Handle> handle;
    const std::lock_guard lock(mutex_);
    const auto found = mappings_.find(address);
    if (found != mappings_.end()) {
        handle = found->second;
        mappings_.erase(found);
        virtualMappings.erase(address);
    }
}

} // namespace doccam::virtualcam
