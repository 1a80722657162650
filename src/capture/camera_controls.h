// Picture controls and focus, through the session's descriptor. One host thread at a time.
//
// Selectors 0 to 5 name brightness, contrast, saturation, hue, gain, gamma; any other the one used
// before. All pause around their requests for the camera's firmware, print or report failures, and
// return 0 or the fixed code of the failing step.
#pragma once

#include "state/parts.h"

namespace doccam {

// Reads a control's range, default and value; null outputs are skipped.
int controlRange(record::Session& session, int selector, int* minimum, int* maximum,
                 int* defaultValue, int* current);

// Sets a control; gamma goes to the control used last instead.
int setControl(record::Session& session, int selector, int value);

// Sets a control to its default and returns that.
int resetControl(record::Session& session, int selector);

// Switches the zoom control between 0 and 1, which makes some cameras focus.
int toggleZoomFocus(record::Session& session);

// Switches automatic focus off and on again.
int refocus(record::Session& session);

} // namespace doccam
