// Virtual cameras under the control of the process that uses them.
//
// The functions are in libdoccam-virtualcam.so. Any thread may call them at any time. They throw
// std::out_of_range for a camera number that does not exist.
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

// One call to a node. Calls are listed in the order in which they returned.
struct Call {
    std::string request; // "open", "close", "mmap", "munmap", or a request such as "DQBUF"
    int node = -1;
    int descriptor = -1;
    int result = 0;
    int error = 0; // errno if the result is -1
};

// One pure sleep: select() without descriptors.
struct Sleep {
    long microseconds = 0;
    pid_t thread = 0;
};

// Removes all cameras, faults, counts and sleeps, and resets the sleep scale to 1. The first call
// of this function or of addCamera also keeps the scenario file's cameras out of this process.
DOCCAM_VIRTUALCAM_API void reset();

// Plugs a camera in at the lowest free node numbers. Numbers of nodes that are still open after an
// unplug are not free.
DOCCAM_VIRTUALCAM_API CameraId addCamera(const CameraDescription& description);
DOCCAM_VIRTUALCAM_API void removeCamera(CameraId camera);
DOCCAM_VIRTUALCAM_API Nodes nodes(CameraId camera);
DOCCAM_VIRTUALCAM_API std::string busInfo(CameraId camera);

// Unplugs the camera: a blocked VIDIOC_DQBUF fails with EINVAL, every later request with ENODEV.
DOCCAM_VIRTUALCAM_API void unplug(CameraId camera);
// Plugs the same model in again: a fresh device, possibly with other node numbers.
DOCCAM_VIRTUALCAM_API void plug(CameraId camera);

DOCCAM_VIRTUALCAM_API void addFault(CameraId camera, const Fault& fault);
DOCCAM_VIRTUALCAM_API void clearFaults(CameraId camera);
// Makes the camera fall silent, or resume the same stream.
DOCCAM_VIRTUALCAM_API void stall(CameraId camera);
DOCCAM_VIRTUALCAM_API void resume(CameraId camera);
// Sets the time between frames; 0 makes frames as fast as they are dequeued.
DOCCAM_VIRTUALCAM_API void setInterval(CameraId camera, int milliseconds);

// Gets or sets the drawn scene, from the next frame on.
DOCCAM_VIRTUALCAM_API SceneSettings scene(CameraId camera);
DOCCAM_VIRTUALCAM_API void setScene(CameraId camera, const SceneSettings& settings);
// Moves the sheet by fractions of the picture's width and height and turns it by degrees.
DOCCAM_VIRTUALCAM_API void moveSheet(CameraId camera, double right, double down, double turn);

DOCCAM_VIRTUALCAM_API std::optional<int> controlValue(CameraId camera, std::uint32_t id);
// Changes a control as if the camera had done it; returns 0 or an errno value.
DOCCAM_VIRTUALCAM_API int setControl(CameraId camera, std::uint32_t id, int value);

DOCCAM_VIRTUALCAM_API bool streaming(CameraId camera);
// Whether a thread is blocked in VIDIOC_DQBUF now.
DOCCAM_VIRTUALCAM_API bool waitedFor(CameraId camera);
// The frame that the last VIDIOC_DQBUF returned.
DOCCAM_VIRTUALCAM_API std::optional<DeliveredFrame> lastFrame(CameraId camera);
// The frames of its stream, or of the last one.
DOCCAM_VIRTUALCAM_API FrameCount frameCount(CameraId camera);

// The calls since the last clearCalls() or reset(); only the latest 100,000 are kept.
DOCCAM_VIRTUALCAM_API std::vector<Call> calls();
// The number of calls of one request, "VIDIOC_DQBUF" or "DQBUF", including failed ones.
DOCCAM_VIRTUALCAM_API int callCount(const std::string& request);
DOCCAM_VIRTUALCAM_API void clearCalls();

// The node descriptors and buffer mappings that the process has now.
DOCCAM_VIRTUALCAM_API int openHandles();
DOCCAM_VIRTUALCAM_API int liveMappings();

// Multiplies the length of pure sleeps by scale. They are recorded with the requested time.
DOCCAM_VIRTUALCAM_API void setSleepScale(double scale);
DOCCAM_VIRTUALCAM_API std::vector<Sleep> sleeps();
DOCCAM_VIRTUALCAM_API void clearSleeps();

} // namespace doccam::virtualcam
