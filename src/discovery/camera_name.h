// A camera's display name, from the driver's card name.
#pragma once

#include "state/parts.h"

namespace doccam {

class UniqueFd;

// The name of the camera at index; null if there is none or its node cannot be opened. Opens it as
// node, which closes the descriptor of an open session. The text is valid until the next call. Host
// thread.
const char* cameraName(record::Discovery& discovery, UniqueFd& node, int index);

} // namespace doccam
