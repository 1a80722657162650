#include "desk_frames.h"

#include "overlap.h"
#include "picture/jpeg.h"
#include "scene/frames/drawn_frame.h"

#include <opencv2/imgcodecs.hpp>

#include <array>
#include <cstddef>

namespace doccam::bench {
namespace {

constexpr double kSameSheet = 0.985;
constexpr std::uint64_t kSeed = 2;

struct Kind {
    const char* name;
    const char* category;
};

constexpr Kind kKinds[] = {
    {"a plain desk", "desk-dark"}, {"a busy page", "pictures"}, {"patterned cloth", "desk-cloth"}};

DeskFrame drawn(const char* category) {
    const virtualcam::DrawnFrame frame = virtualcam::drawFrame(category, kSeed);
    DeskFrame made;
    made.jpeg = virtualcam::encodeJpeg(frame.picture, frame.jpegQuality);
    made.pixels = cv::imdecode(made.jpeg, cv::IMREAD_COLOR);
    made.corners = frame.sheets.front().corners;
    return made;
}

} // namespace

DoccamImage DeskFrame::image() const {
    return {pixels.data, pixels.cols, pixels.rows, pixels.step, DOCCAM_PIXELS_BGR};
}

bool DeskFrame::shows(const DoccamSheet& sheet) const {
    virtualcam::Quad found;
    for (std::size_t i = 0; i < found.size(); ++i) {
        found[i] = {sheet.corners[i][0], sheet.corners[i][1]};
    }
    return test::overlap(found, corners, pixels.size()) >= kSameSheet;
}

DoccamSheet DeskFrame::sheet() const {
    DoccamSheet sheet{};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        sheet.corners[i][0] = corners[i].x;
        sheet.corners[i][1] = corners[i].y;
    }
    return sheet;
}

std::string nameOf(DeskKind kind) {
    return kKinds[static_cast<std::size_t>(kind)].name;
}

const DeskFrame& deskFrame(DeskKind kind) {
    static std::array<DeskFrame, std::size(kKinds)> frames;
    const auto number = static_cast<std::size_t>(kind);
    if (frames.at(number).pixels.empty()) {
        frames.at(number) = drawn(kKinds[number].category);
    }
    return frames.at(number);
}

} // namespace doccam::bench
