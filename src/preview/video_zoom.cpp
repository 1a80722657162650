// Rendering one frame as the set view says.
#include "preview/picture.h"
#include "preview/view_state.h"

#include <doccam/doccam.hpp>

void VideoZoomToWeb(cv::Mat frame, unsigned char* out) {
    doccam::renderPicture(frame, doccam::loadView(doccam::state()), out);
}

void VideoZoomToWebEx(cv::Mat frame, cv::Mat out) {
    doccam::renderInto(frame, doccam::loadView(doccam::state()), out);
}
