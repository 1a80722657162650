#include "preview_fixture.h"

#include <doccam/doccam.hpp>

#include <ostream>

namespace doccam::test {
namespace {

void forgetSession() {
    LibraryState& library = state();
    library.bKeep = false;
    setGrabSize(0, 0);
    library.pGetVideoWebStream = nullptr;
    library.WEB_BUF = nullptr;
    library.previewPixels.reset();
    library.previewBytes = 0;
    library.zoomimage.release();
}

} // namespace

std::ostream& operator<<(std::ostream& out, const PreviewFields& fields) {
    return out << "form " << fields.FormWidth << 'x' << fields.FormHeight << ", form start "
               << fields.FormStartX << ',' << fields.FormStartY << ", show " << fields.ShowWidth
               << 'x' << fields.ShowHeight << ", zoom " << fields.ZoomWidth << 'x'
               << fields.ZoomHeight << ", zoom start " << fields.ZoomStartX << ','
               << fields.ZoomStartY << ", offset " << fields.VideoOffsetX << ','
               << fields.VideoOffsetY << ", scale " << fields.pZoomScale << " best "
               << fields.pBestScale << ", angle " << fields.RotateAngle << " flag "
               << fields.RotateFlag;
}

PreviewFields currentFields() {
    const LibraryState& library = state();
    return {library.FormWidth,  library.FormHeight, library.FormStartX,   library.FormStartY,
            library.ShowWidth,  library.ShowHeight, library.ZoomWidth,    library.ZoomHeight,
            library.ZoomStartX, library.ZoomStartY, library.VideoOffsetX, library.VideoOffsetY,
            library.pZoomScale, library.pBestScale, library.RotateAngle,  library.RotateFlag};
}

void Preview::SetUp() {
    forgetSession();
    setFields({});
}

void Preview::TearDown() {
    forgetSession();
    setFields({});
}

void Preview::stream(FrameSize frame) {
    setGrabSize(frame.width, frame.height);
    state().bKeep = true;
}

void Preview::streamLargeFrame() {
    stream({1000, 750});
    SetWebFormSize(800, 600);
}

void Preview::streamSmallFrame() {
    stream({402, 302});
    SetWebFormSize(800, 600);
}

void Preview::setFields(const PreviewFields& fields) {
    LibraryState& library = state();
    library.FormWidth = fields.FormWidth;
    library.FormHeight = fields.FormHeight;
    library.FormStartX = fields.FormStartX;
    library.FormStartY = fields.FormStartY;
    library.ShowWidth = fields.ShowWidth;
    library.ShowHeight = fields.ShowHeight;
    library.ZoomWidth = fields.ZoomWidth;
    library.ZoomHeight = fields.ZoomHeight;
    library.ZoomStartX = fields.ZoomStartX;
    library.ZoomStartY = fields.ZoomStartY;
    library.VideoOffsetX = fields.VideoOffsetX;
    library.VideoOffsetY = fields.VideoOffsetY;
    library.pZoomScale = fields.pZoomScale;
    library.pBestScale = fields.pBestScale;
    library.RotateAngle = fields.RotateAngle;
    library.RotateFlag = fields.RotateFlag;
}

} // namespace doccam::test
