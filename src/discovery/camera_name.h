// A camera's display name, from the driver's card name.
#pragma once

#include "state/parts.h"

#include <string>
#include <vector>

namespace doccam {

class UniqueFd;

// The name of the camera at index, valid until the next call; null if its node cannot be opened.
// Opens it as node, which closes the descriptor of an open session. Host thread.
const char* cameraName(record::Discovery& discovery, UniqueFd& node, int index);

// The pieces of text between patterns, including empty ones; the whole text for an empty pattern.
std::vector<std::string> splitText(std::string text, const std::string& pattern);

} // namespace doccam
