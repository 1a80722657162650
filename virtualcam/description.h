// The description of a virtual camera: the fields of a scenario file.
#pragma once

#include "scene/scene_settings.h"

#include <cerrno>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace doccam::virtualcam {

struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

// Every size from smallest to largest in steps.
struct SizeRange {
    Size smallest;
    Size largest;
    Size step;
};

// The V4L2 number of a pixel format's four characters.
constexpr std::uint32_t fourcc(const char (&code)[5]) {
    return static_cast<std::uint32_t>(code[0]) | static_cast<std::uint32_t>(code[1]) << 8 |
           static_cast<std::uint32_t>(code[2]) << 16 | static_cast<std::uint32_t>(code[3]) << 24;
}

inline constexpr std::uint32_t kMjpeg = fourcc("MJPG");
inline constexpr std::uint32_t kYuyv = fourcc("YUYV");

struct FormatDescription {
    std::uint32_t pixelFormat = kMjpeg;
    std::vector<Size> sizes;
    std::optional<SizeRange> range;      // offered as stepwise sizes instead of the list
    std::vector<int> frameRates{30, 15}; // frames per second; the first is the default
};

struct ControlDescription {
    std::uint32_t id = 0;
    std::string name;
    int minimum = 0;
    int maximum = 0;
    int step = 1;
    int defaultValue = 0;
    bool boolean = false;
};

enum class FaultKind {
    kCall,        // the at-th call of request fails with error
    kGrant,       // every REQBUFS for buffers grants value of them
    kIndex,       // the at-th frame comes back under buffer index value
    kBufferBytes, // buffers (and sizeimage) are value bytes long
    kCorrupt,     // the at-th frame cannot be decoded
    kTruncated,   // the at-th frame is cut off half-way
    kEmpty,       // the at-th frame has no bytes
    kWrongSize,   // the at-th frame is a picture of half the width and height, or a
                  // progressive JPEG that announces a square of side value
    kStall,       // the at-th frame is held back until resume()
    kUnplug       // instead of the at-th frame the camera is unplugged
};

// One fault. Calls and frames are counted from 1, starting when the fault is set.
struct Fault {
    FaultKind kind = FaultKind::kCall;
    std::string request; // "VIDIOC_DQBUF", "open", "close", "mmap", "munmap"
    int at = 1;
    int error = EIO;
    int value = 0;
    bool onwards = false; // also every later call or frame
};

struct CameraDescription {
    std::string vendor = "0c45";
    std::string product = "6366";
    std::string card = "Doc Cam: Doc Cam";
    std::string busInfo;                      // empty: derived from the camera's place
    std::vector<FormatDescription> formats;   // empty: the document camera's formats
    std::optional<int> intervalMs;            // none: the negotiated rate; 0: as fast as dequeued
    std::string picture;                      // path of a JPEG or PNG; empty: the drawn scene
    SceneSettings scene;                      // its noise applies to a photo too
    std::vector<ControlDescription> controls; // empty: the document camera's controls
    bool strictControls = false;              // a value out of range is ERANGE, not clamped
    std::vector<Fault> faults;
};

// MJPEG and YUYV in the five sizes of a document camera.
std::vector<FormatDescription> documentCameraFormats();

// Brightness, contrast, saturation, hue, gain, gamma, zoom and focus.
std::vector<ControlDescription> documentCameraControls();

// A camera with everything filled in.
CameraDescription documentCamera(const std::string& vendor = "0c45",
                                 const std::string& product = "6366");

// Two supported models, the first one lower in the table of models.
std::vector<CameraDescription> defaultCameras();

} // namespace doccam::virtualcam
