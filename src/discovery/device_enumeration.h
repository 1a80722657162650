// Which supported cameras are attached, as every operation that takes a camera index asks first.
#pragma once

namespace doccam {

// True when index names a found camera; enumerates first if none is known yet.
bool cameraExists(int index);

} // namespace doccam
