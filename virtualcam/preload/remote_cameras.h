// The cameras of this process, plugged from outside.
#pragma once

namespace doccam::virtualcam {

// Lets the launcher plug this process's cameras, where the environment says so. Of several
// processes under one launcher the first has the cameras that it plugs.
void admitRemoteControl();

} // namespace doccam::virtualcam
