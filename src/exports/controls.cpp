// Picture controls and focus.
#include "capture/camera_controls.h"
#include "state/library_state.h"

#include <doccam/doccam.h>

using doccam::state;

int GetVideoCtlParam(int selector, int* minimum, int* maximum, int* defaultValue, int* current) {
    return doccam::controlRange(state().session, selector, minimum, maximum, defaultValue, current);
}

int SetVideoCtlParam(int selector, int value) {
    return doccam::setControl(state().session, selector, value);
}

int SetVideoCtlDefaultParam(int selector) {
    return doccam::resetControl(state().session, selector);
}

int ManualFocus() {
    return doccam::toggleZoomFocus(state().session);
}

int ManualFocusEx() {
    return doccam::refocus(state().session);
}
