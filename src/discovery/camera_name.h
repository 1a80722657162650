// A camera's display name, from the driver's card name.
#pragma once

#include "state/parts.h"

#include <string>
#include <vector>

namespace doccam {

class UniqueFd;

// The name of the camera at index; null if there is none or its node cannot be opened. Opens it as
// node, which closes the descriptor of an open session. The text is valid until the next call. Host
// thread.
const char* cameraName(record::Discovery& discovery, UniqueFd& node, int index);

// The pieces of text between the occurrences of pattern, including empty ones. Never empty; an
// empty pattern gives the whole text.
std::vector<std::string> splitText(std::string text, const std::string& pattern);

} // namespace doccam
