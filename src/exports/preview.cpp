// The preview: the form, moving the view, rendering.
#include "preview/form.h"
#include "preview/navigation.h"
#include "preview/picture.h"
#include "preview/view_state.h"

#include <doccam/doccam.hpp>

void SetWebFormSize(int width, int height) {
    doccam::declareForm(width, height);
}

void FuncSuitableSize(int formWidth, int formHeight) {
    doccam::fitView({formWidth, formHeight});
}

void FuncCalculateShowWH() {
    doccam::rescaleView();
}

void FuncDisplayCenter(int /*width*/, int /*height*/) {}

int Web_SetMoveOffet(int dx, int dy) {
    return doccam::pan(dx, dy);
}

int Web_ZoomIn() {
    return doccam::zoomIn();
}

int Web_ZoomOut() {
    return doccam::zoomOut();
}

int Web_TrueSize() {
    return doccam::showTrueSize();
}

int Web_BestSize() {
    return doccam::showBestSize();
}

int Web_RotateL() {
    return doccam::turnViewLeft();
}

int Web_RotateR() {
    return doccam::turnViewRight();
}

void VideoZoomToWeb(cv::Mat frame, unsigned char* out) {
    doccam::renderPicture(frame, doccam::loadView(doccam::state().view), out);
}

void VideoZoomToWebEx(cv::Mat frame, cv::Mat out) {
    doccam::renderInto(frame, doccam::loadView(doccam::state().view), out);
}
