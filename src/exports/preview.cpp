// The preview: the form, moving the view, rendering.
#include "preview/form.h"
#include "preview/navigation.h"
#include "preview/picture.h"
#include "preview/view_state.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

using doccam::state;

void SetWebFormSize(int width, int height) {
    doccam::declareForm(state(), width, height);
}

void FuncSuitableSize(int formWidth, int formHeight) {
    doccam::fitView(state(), {formWidth, formHeight});
}

void FuncCalculateShowWH() {
    doccam::rescaleView(state());
}

void FuncDisplayCenter(int /*width*/, int /*height*/) {}

int Web_SetMoveOffet(int dx, int dy) {
    return doccam::pan(state(), dx, dy);
}

int Web_ZoomIn() {
    return doccam::zoomIn(state());
}

int Web_ZoomOut() {
    return doccam::zoomOut(state());
}

int Web_TrueSize() {
    return doccam::showTrueSize(state());
}

int Web_BestSize() {
    return doccam::showBestSize(state());
}

int Web_RotateL() {
    return doccam::turnViewLeft(state());
}

int Web_RotateR() {
    return doccam::turnViewRight(state());
}

void VideoZoomToWeb(cv::Mat frame, unsigned char* out) {
    doccam::renderPicture(frame, doccam::loadView(state().view), out);
}

void VideoZoomToWebEx(cv::Mat frame, cv::Mat out) {
    doccam::renderInto(frame, doccam::loadView(state().view), out);
}
