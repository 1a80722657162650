// Where the server can be reached.
#pragma once

#include <string>
#include <vector>

namespace doccam::serve {

// What to open in a browser for a server that listens at address: that address itself, or for a
// wildcard one for each of the machine's of that kind. The token is in the fragment, which a
// browser sends to nobody.
std::vector<std::string> addressesOf(const std::string& address, int port,
                                     const std::string& token);

} // namespace doccam::serve
