// Frames of one sheet each on a desk, at the camera's full size.
#pragma once

#include "scene/views/camera_view.h"

#include <doccam/page.h>

#include <opencv2/core/mat.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace doccam::bench {

struct DeskFrame {
    std::vector<std::uint8_t> jpeg;
    cv::Mat pixels; // the decoded jpeg, blue first
    virtualcam::Quad corners;

    DoccamImage image() const;
    bool shows(const DoccamSheet& sheet) const; // whether that is its sheet
    DoccamSheet sheet() const;                  // with its true corners
};

enum class DeskKind {
    kPlain,     // a letter on a dark desk
    kBusyPage,  // a page full of pictures
    kBusyCloth, // a letter on patterned cloth
};

inline constexpr DeskKind kDeskKinds[] = {DeskKind::kPlain, DeskKind::kBusyPage,
                                          DeskKind::kBusyCloth};

std::string nameOf(DeskKind kind);
const DeskFrame& deskFrame(DeskKind kind);

} // namespace doccam::bench
