// The camera that --camera names: by its index, a part of its name, its USB id, or its device node.
#pragma once

#include <string>

namespace doccam::host {

// The index of the camera that text names. An index is taken as it is. Throws Failure, with the
// attached cameras, if no camera or more than one is meant. Call it while no session is open, on
// one host thread.
int chosenCamera(const std::string& text);

// What is wrong with text whatever is attached; empty if nothing is.
std::string refuseOddCamera(const std::string& text);

} // namespace doccam::host
