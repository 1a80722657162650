// A camera's display name, from the driver's card name.
#pragma once

namespace doccam {

// The name of the camera at index, null when there is none or its node cannot be opened. Takes the
// descriptor of an open session away. The text stays until the next call. Host thread.
const char* cameraName(int index);

} // namespace doccam
