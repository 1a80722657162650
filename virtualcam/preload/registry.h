// The cameras of this process, their nodes and their open handles.
#pragma once

#include "control.h"
#include "picture/picture_source.h"
#include "preload/call_log.h"
#include "preload/handle.h"

#include <map>
#include <memory>
#include <mutex>
#include <set>

namespace doccam::virtualcam {

struct Camera {
    CameraDescription description;
    Identity identity;
    std::shared_ptr<PictureSource> source;
    std::shared_ptr<CaptureDevice> device; // replaced when the camera is plugged in again
    Nodes nodes;
    bool plugged = false;
};

class Registry {
  public:
    // Never destroyed: the program may close descriptors after all destructors.
    static Registry& instance();

    // Removes all cameras and ignores the scenario file from now on.
    void clear();
    CameraId add(const CameraDescription& description);
    void remove(CameraId camera);
    void plug(CameraId camera);
    void unplug(CameraId camera);
    // A copy that shares the camera's device and source.
    Camera camera(CameraId camera);

    // Whether /dev/video<node> is, or was, a node of a virtual camera.
    bool owns(int node);
    // Opens a node; returns a descriptor, or -1 with errno set.
    int open(int node, int flags);
    std::shared_ptr<Handle> find(int descriptor);
    // Makes another descriptor refer to the same handle.
    void share(int descriptor, int copy);
    // Forgets a descriptor that is about to be closed.
    void forget(int descriptor);
    int openHandles();

    void noteMapping(void* address, const std::shared_ptr<Handle>& handle);
    // The handle through which an address was mapped; null for none.
    std::shared_ptr<Handle> mappedBy(void* address);
    void forgetMapping(void* address);

    CallLog& log() { return log_; }

  private:
    void configure();
    CameraId addLocked(const CameraDescription& description);
    void plugLocked(Camera& camera);
    void unplugLocked(Camera& camera);
    Camera& at(CameraId camera);
    int lowestFreeNode() const;
    bool held(int node) const;
    std::shared_ptr<Handle> createHandle(int node);

    std::mutex mutex_;
    bool configured_ = false;
    std::map<CameraId, Camera> cameras_;
    CameraId nextCamera_ = 0;
    ClientId nextClient_ = 1;
    std::set<int> knownNodes_;
    std::map<int, std::shared_ptr<Handle>> handles_;
    std::map<void*, std::shared_ptr<Handle>> mappings_;
    CallLog log_;
};

} // namespace doccam::virtualcam
