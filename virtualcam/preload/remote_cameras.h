// Plugging this process's cameras from outside.
#pragma once

namespace doccam::virtualcam {

// Lets the launcher plug this process's cameras if the environment asks for it. Of several
// processes under one launcher, the first one's cameras are plugged.
void admitRemoteControl();

} // namespace doccam::virtualcam
