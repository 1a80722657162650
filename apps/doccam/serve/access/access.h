// Access control: a token known only to the user who started the server, and the server's own
// names and addresses.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace doccam::serve {

struct AccessRules {
    std::string token;
    int port = 0;
    std::vector<std::string> names; // host names by which the server may be addressed
    bool anyAddress = false;        // also any numeric address, as only names can be rebound
};

// A request's credentials. Missing headers are empty, a missing origin is none.
struct Credentials {
    std::string host;
    std::optional<std::string> origin;
    std::string authorization; // the Authorization header
};

enum class Verdict { kAllowed, kForeignHost, kForeignOrigin, kNoToken };

inline constexpr std::size_t kTokenDigits = 64;

// 32 random bytes as hexadecimal digits. Throws std::system_error if there is no source.
std::string randomToken();

// Whether two texts are equal, in a time that depends only on their lengths.
bool sameSecret(std::string_view left, std::string_view right);

// The rules for a server that listens on address (a name or a number) and port.
AccessRules rulesFor(const std::string& address, int port, const std::string& token);

// The addresses to open for a server that listens on address: the address itself, or for a wildcard
// all of the machine's of that kind. The token is in the fragment, which browsers never send.
std::vector<std::string> addressesOf(const std::string& address, int port,
                                     const std::string& token);

// Checks Host and Origin before the token, so that a foreign page learns nothing about the token.
// The token must be in a header: browsers send cookies to every port of a host.
Verdict judge(const AccessRules& rules, const Credentials& credentials);

// Short-lived permits for requests that a browser makes without headers: events, pictures,
// downloads. A ticket admits one request for one path within its lifetime. Any thread.
class Tickets {
  public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds kLifetime{30};
    // Beyond this the oldest unused one is dropped.
    static constexpr std::size_t kMaximumOpen = 256;

    explicit Tickets(std::function<Clock::time_point()> now = Clock::now);

    // A new ticket for a path without query.
    std::string issue(std::string_view path);

    // Whether the ticket is valid for the path; uses it up.
    bool redeem(std::string_view ticket, std::string_view path);

  private:
    struct Ticket {
        std::string text;
        std::string path;
        Clock::time_point end;
    };

    const std::function<Clock::time_point()> now_;
    std::mutex mutex_;
    std::deque<Ticket> open_; // oldest first
};

} // namespace doccam::serve
