// Picture controls and focus.
#include "capture/camera_controls.h"

#include <doccam/doccam.h>

int GetVideoCtlParam(int selector, int* minimum, int* maximum, int* defaultValue, int* current) {
    return doccam::controlRange(selector, minimum, maximum, defaultValue, current);
}

int SetVideoCtlParam(int selector, int value) {
    return doccam::setControl(selector, value);
}

int SetVideoCtlDefaultParam(int selector) {
    return doccam::resetControl(selector);
}

int ManualFocus() {
    return doccam::toggleZoomFocus();
}

int ManualFocusEx() {
    return doccam::refocus();
}
