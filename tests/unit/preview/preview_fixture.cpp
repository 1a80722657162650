#include "preview_fixture.h"

#include <doccam/doccam.hpp>

#include <ostream>

namespace doccam::test {
namespace {

void forgetSession() {
    LibraryState& library = state();
    library.session.bKeep = false;
    setGrabSize(0, 0);
    library.settings.pGetVideoWebStream = nullptr;
    library.view.WEB_BUF = nullptr;
    library.session.frames->preview.reset();
    library.view.previewBytes = 0;
    library.session.frames->zoomimage.release();
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
    return {library.view.FormWidth,     library.view.FormHeight,   library.view.FormStartX,
            library.view.FormStartY,    library.view.ShowWidth,    library.view.ShowHeight,
            library.view.ZoomWidth,     library.view.ZoomHeight,   library.view.ZoomStartX,
            library.view.ZoomStartY,    library.view.VideoOffsetX, library.view.VideoOffsetY,
            library.view.pZoomScale,    library.view.pBestScale,   library.settings.RotateAngle,
            library.settings.RotateFlag};
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
    state().session.bKeep = true;
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
    library.view.FormWidth = fields.FormWidth;
    library.view.FormHeight = fields.FormHeight;
    library.view.FormStartX = fields.FormStartX;
    library.view.FormStartY = fields.FormStartY;
    library.view.ShowWidth = fields.ShowWidth;
    library.view.ShowHeight = fields.ShowHeight;
    library.view.ZoomWidth = fields.ZoomWidth;
    library.view.ZoomHeight = fields.ZoomHeight;
    library.view.ZoomStartX = fields.ZoomStartX;
    library.view.ZoomStartY = fields.ZoomStartY;
    library.view.VideoOffsetX = fields.VideoOffsetX;
    library.view.VideoOffsetY = fields.VideoOffsetY;
    library.view.pZoomScale = fields.pZoomScale;
    library.view.pBestScale = fields.pBestScale;
    library.settings.RotateAngle = fields.RotateAngle;
    library.settings.RotateFlag = fields.RotateFlag;
}

} // namespace doccam::test
