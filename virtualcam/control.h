// Virtual cameras under the control of the process that uses them.
//
// The functions live in libdoccam-virtualcam.so. All of them may be called by any thread at any
// time. A camera number that does not exist is std::out_of_range.
#pragma once

#include "description.h"
#include "device/frame_source.h"

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#define DOCCAM_VIRTUALCAM_API __attribute__((visibility("default")))

namespace doccam::virtualcam {

using CameraId = int;

// The numbers N of a camera's nodes /dev/videoN.
struct Nodes {
    int capture = -1;
    int metadata = -1;
};

// One call to a node, in the order in which the calls returned.
struct Call {
    std::string request; // "open", "close", "mmap", "munmap", or a request such as "DQBUF"
    int node = -1;
    int descriptor = -1;
    int result = 0;
    int error = 0; // errno where the result is -1
};

// One pure sleep: select() without descriptors.
struct Sleep {
    long microseconds = 0;
    pid_t thread = 0;
};

// Removes all cameras, faults, counts and sleeps; the sleep scale is 1 again. The first call of
// this function or of addCamera also keeps the cameras of the scenario file out of this process.
DOCCAM_VIRTUALCAM_API void reset();

// Plugs a camera in under the lowest free node numbers. Numbers whose nodes are still held open
// after an unplug are not free.
DOCCAM_VIRTUALCAM_API CameraId addCamera(const CameraDescription& description);
DOCCAM_VIRTUALCAM_API void removeCamera(CameraId camera);
DOCCAM_VIRTUALCAM_API Nodes nodes(CameraId camera);
DOCCAM_VIRTUALCAM_API std::string busInfo(CameraId camera);

// Pulls the camera out: a blocked VIDIOC_DQBUF fails with EINVAL, every later request with ENODEV.
DOCCAM_VIRTUALCAM_API void unplug(CameraId camera);
// Plugs the same model in again: a fresh device, perhaps under other node numbers.
DOCCAM_VIRTUALCAM_API void plug(CameraId camera);

DOCCAM_VIRTUALCAM_API void addFault(CameraId camera, const Fault& fault);
DOCCAM_VIRTUALCAM_API void clearFaults(CameraId camera);
// The camera falls silent, and goes on with the same stream.
DOCCAM_VIRTUALCAM_API void stall(CameraId camera);
DOCCAM_VIRTUALCAM_API void resume(CameraId camera);
// The time from one frame to the next; 0 makes frames as fast as they are asked for.
DOCCAM_VIRTUALCAM_API void setInterval(CameraId camera, int milliseconds);

// The drawn scene, from the next frame on.
DOCCAM_VIRTUALCAM_API SceneSettings scene(CameraId camera);
DOCCAM_VIRTUALCAM_API void setScene(CameraId camera, const SceneSettings& settings);
// Moves the sheet by parts of the picture's width and height and turns it by degrees.
DOCCAM_VIRTUALCAM_API void moveSheet(CameraId camera, double right, double down, double turn);

DOCCAM_VIRTUALCAM_API std::optional<int> controlValue(CameraId camera, std::uint32_t id);
// Changes a control as if by itself; 0 or an errno value.
DOCCAM_VIRTUALCAM_API int setControl(CameraId camera, std::uint32_t id, int value);

DOCCAM_VIRTUALCAM_API bool streaming(CameraId camera);
// A thread is blocked in VIDIOC_DQBUF at this moment.
DOCCAM_VIRTUALCAM_API bool waitedFor(CameraId camera);
// The frame that the last VIDIOC_DQBUF brought.
DOCCAM_VIRTUALCAM_API std::optional<DeliveredFrame> lastFrame(CameraId camera);

// The calls since the last clearCalls() or reset(); only the latest 100,000 are kept.
DOCCAM_VIRTUALCAM_API std::vector<Call> calls();
// How many there were of one request, "VIDIOC_DQBUF" or "DQBUF", failed ones included.
DOCCAM_VIRTUALCAM_API int callCount(const std::string& request);
DOCCAM_VIRTUALCAM_API void clearCalls();

// Descriptors of nodes and mappings of buffers that the process has at present.
DOCCAM_VIRTUALCAM_API int openHandles();
DOCCAM_VIRTUALCAM_API int liveMappings();

// Pure sleeps last this many times as long as asked. They are recorded with the time asked for.
DOCCAM_VIRTUALCAM_API void setSleepScale(double scale);
DOCCAM_VIRTUALCAM_API std::vector<Sleep> sleeps();
DOCCAM_VIRTUALCAM_API void clearSleeps();

} // namespace doccam::virtualcam
