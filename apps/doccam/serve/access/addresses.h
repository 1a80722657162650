// The server's addresses for browsers.
#pragma once

#include <string>
#include <vector>

namespace doccam::serve {

// The addresses to open for a server that listens on address: the address itself, or for a wildcard
// all of the machine's of that kind. The token is in the fragment, which browsers never send.
std::vector<std::string> addressesOf(const std::string& address, int port,
                                     const std::string& token);

} // namespace doccam::serve
