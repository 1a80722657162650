#include "description.h"

#include <linux/videodev2.h>

namespace doccam::virtualcam {

std::vector<FormatDescription> documentCameraFormats() {
    const std::vector<Size> sizes{
        {640, 480}, {1280, 960}, {1600, 1200}, {2048, 1536}, {3264, 2448}};
    FormatDescription mjpeg;
    mjpeg.pixelFormat = kMjpeg;
    mjpeg.sizes = sizes;
    FormatDescription yuyv = mjpeg;
    yuyv.pixelFormat = kYuyv;
    return {mjpeg, yuyv};
}

std::vector<ControlDescription> documentCameraControls() {
    return {
        {V4L2_CID_BRIGHTNESS, "Brightness", -64, 64, 1, 0, false},
        {V4L2_CID_CONTRAST, "Contrast", 0, 64, 1, 32, false},
        {V4L2_CID_SATURATION, "Saturation", 0, 128, 1, 64, false},
        {V4L2_CID_HUE, "Hue", -40, 40, 1, 0, false},
        {V4L2_CID_GAMMA, "Gamma", 72, 500, 1, 100, false},
        {V4L2_CID_GAIN, "Gain", 0, 100, 1, 0, false},
        {V4L2_CID_FOCUS_ABSOLUTE, "Focus, Absolute", 0, 1023, 1, 0, false},
        {V4L2_CID_FOCUS_AUTO, "Focus, Automatic Continuous", 0, 1, 1, 1, true},
        {V4L2_CID_ZOOM_ABSOLUTE, "Zoom, Absolute", 0, 9, 1, 0, false},
    };
}

CameraDescription documentCamera(const std::string& vendor, const std::string& product) {
    CameraDescription camera;
    camera.vendor = vendor;
    camera.product = product;
    camera.formats = documentCameraFormats();
    camera.controls = documentCameraControls();
    return camera;
}

std::vector<CameraDescription> defaultCameras() {
    CameraDescription first = documentCamera("0c45", "6366");
    CameraDescription second = documentCamera("1778", "0210");
    second.card = "Sheet Cam: Sheet Cam";
    second.scene.angle = -7.0;
    return {first, second};
}

} // namespace doccam::virtualcam
