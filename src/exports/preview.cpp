// The preview: the form, moving the view, rendering.
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
    return doccam::zoomTo(state(), doccam::largerScale);
}

int Web_ZoomOut() {
    return doccam::zoomTo(state(), doccam::smallerScale);
}

int Web_TrueSize() {
    return doccam::zoomTo(state(), [](const doccam::View&) { return doccam::kTrueScale; });
}

int Web_BestSize() {
    return doccam::zoomTo(state(), [](const doccam::View& view) { return view.bestScale; });
}

int Web_RotateL() {
    return doccam::turnView(state(), doccam::turnedLeft);
}

int Web_RotateR() {
    return doccam::turnView(state(), doccam::turnedRight);
}

void VideoZoomToWeb(cv::Mat frame, unsigned char* out) {
    doccam::renderPicture(frame, doccam::loadView(state().view), out);
}

void VideoZoomToWebEx(cv::Mat frame, cv::Mat out) {
    doccam::renderInto(frame, doccam::loadView(state().view), out);
}
