// Who may talk to the server: a token that only its starter knows, and names that are its own.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace doccam::serve {

struct AccessRules {
    std::string token;
    int port = 0;
    std::vector<std::string> names; // host names under which the server may be addressed
    bool anyAddress = false;        // any numeric address too: only names can be re-pointed
};

// What a request says of itself. Headers that are missing are empty, origin is none.
struct Credentials {
    std::string host;
    std::optional<std::string> origin;
    std::string authorization; // the Authorization header
};

enum class Verdict { kAllowed, kForeignHost, kForeignOrigin, kNoToken };

inline constexpr std::size_t kTokenDigits = 64;

// 32 random bytes as hexadecimal digits. Throws std::system_error when the system has none.
std::string randomToken();

// Whether two texts are equal, in a time that depends on their lengths alone.
bool sameSecret(std::string_view left, std::string_view right);

// A host's name or number as it stands in an address: one with colons in brackets.
std::string inAddress(const std::string& name);

// The rules for a server that listens at address (a name or a number) and port.
AccessRules rulesFor(const std::string& address, int port, const std::string& token);

// Whether address is this machine's own loopback, reachable from nowhere else.
bool isLoopback(std::string_view address);

// Host and Origin are judged before the token, so that a foreign page learns nothing from it. The
// token comes in a header alone: a browser adds a cookie to what it asks of any port of the host.
Verdict judge(const AccessRules& rules, const Credentials& credentials);

} // namespace doccam::serve
