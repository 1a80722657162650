#include "device/request_names.h"

#include <linux/videodev2.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace doccam::virtualcam {

namespace {

constexpr std::pair<std::uint32_t, const char*> kNames[] = {
    {VIDIOC_QUERYCAP, "QUERYCAP"},
    {VIDIOC_ENUM_FMT, "ENUM_FMT"},
    {VIDIOC_ENUM_FRAMESIZES, "ENUM_FRAMESIZES"},
    {VIDIOC_ENUM_FRAMEINTERVALS, "ENUM_FRAMEINTERVALS"},
    {VIDIOC_G_FMT, "G_FMT"},
    {VIDIOC_TRY_FMT, "TRY_FMT"},
    {VIDIOC_S_FMT, "S_FMT"},
    {VIDIOC_G_PARM, "G_PARM"},
    {VIDIOC_S_PARM, "S_PARM"},
    {VIDIOC_REQBUFS, "REQBUFS"},
    {VIDIOC_QUERYBUF, "QUERYBUF"},
    {VIDIOC_QBUF, "QBUF"},
    {VIDIOC_DQBUF, "DQBUF"},
    {VIDIOC_STREAMON, "STREAMON"},
    {VIDIOC_STREAMOFF, "STREAMOFF"},
    {VIDIOC_QUERYCTRL, "QUERYCTRL"},
    {VIDIOC_QUERY_EXT_CTRL, "QUERY_EXT_CTRL"},
    {VIDIOC_QUERYMENU, "QUERYMENU"},
    {VIDIOC_G_CTRL, "G_CTRL"},
    {VIDIOC_S_CTRL, "S_CTRL"},
    {VIDIOC_G_EXT_CTRLS, "G_EXT_CTRLS"},
    {VIDIOC_S_EXT_CTRLS, "S_EXT_CTRLS"},
    {VIDIOC_TRY_EXT_CTRLS, "TRY_EXT_CTRLS"},
    {VIDIOC_ENUMINPUT, "ENUMINPUT"},
    {VIDIOC_G_INPUT, "G_INPUT"},
    {VIDIOC_S_INPUT, "S_INPUT"},
    {VIDIOC_G_PRIORITY, "G_PRIORITY"},
    {VIDIOC_S_PRIORITY, "S_PRIORITY"},
};

const std::pair<std::uint32_t, const char*>* find(std::uint32_t request) {
    return std::find_if(std::begin(kNames), std::end(kNames),
                        [&](const auto& entry) { return entry.first == request; });
}

} // namespace

const char* requestName(std::uint32_t request) {
    const auto* found = find(request);
    return found == std::end(kNames) ? "UNKNOWN" : found->second;
}

bool isKnownRequest(std::uint32_t request) {
    return find(request) != std::end(kNames);
}

} // namespace doccam::virtualcam
