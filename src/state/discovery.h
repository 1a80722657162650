// The cameras and frame sizes found most recently.
#pragma once

#include "base/files/model_table.h"

#include <array>
#include <string>
#include <vector>

namespace doccam::record {

// Host threads only.
struct Discovery {
    int deviceCount = 0;
    std::array<std::string, 10> devices;
    std::array<std::string, 10> usbIds;              // of devices, "vvvv:pppp"
    std::string cameraName;                          // what getCameraName returned last
    std::array<const char*, kModelRows> gpyVendor{}; // null past the configured rows
    std::array<const char*, kModelRows> gpyProduct{};
    std::vector<int> formatList; // 0 MJPEG, 1 YUYV, 2 other, in the driver's order
    std::vector<int> yuvWidthList, yuvHeightList;
    std::vector<int> mjpegWidthList, mjpegHeightList;
    std::vector<int> otherfmtWidthList, otherfmtHeightList;
};

} // namespace doccam::record
