#include "serve/access/access.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netdb.h>
#include <netinet/in.h>
#include <strings.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <system_error>
#include <utility>

namespace doccam::serve {
namespace {

constexpr std::size_t kTokenBytes = kTokenDigits / 2;

bool sameName(std::string_view left, std::string_view right) {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

bool isNumeric(const std::string& name) {
    std::array<unsigned char, sizeof(in6_addr)> ignored{};
    if (name.size() > 2 && name.front() == '[' && name.back() == ']') {
        return inet_pton(AF_INET6, name.substr(1, name.size() - 2).c_str(), ignored.data()) == 1;
    }
    return inet_pton(AF_INET, name.c_str(), ignored.data()) == 1;
}

// Splits "name:port"; the default port is 80.
bool matchesHost(const AccessRules& rules, const std::string& host) {
    const std::string suffix = std::string(":").append(std::to_string(rules.port));
    std::string name = host;
    if (host.size() > suffix.size() && host.ends_with(suffix)) {
        name.resize(host.size() - suffix.size());
    } else if (rules.port != 80) {
        return false;
    }
    const bool known = std::any_of(rules.names.begin(), rules.names.end(),
                                   [&](const auto& own) { return sameName(own, name); });
    return known || (rules.anyAddress && isNumeric(name));
}

std::string_view bearerToken(std::string_view authorization) {
    constexpr std::string_view kScheme = "bearer ";
    const bool bearer = authorization.size() > kScheme.size() &&
                        sameName(authorization.substr(0, kScheme.size()), kScheme);
    return bearer ? authorization.substr(kScheme.size()) : std::string_view();
}

bool isLoopback(std::string_view address) {
    return address == "localhost" || address == "::1" || address.starts_with("127.");
}

// With brackets if the name has colons.
std::string inAddress(const std::string& name) {
    return name.find(':') == std::string::npos ? name : std::string("[").append(name).append("]");
}

// An interface's numeric address, or an empty text for one that no browser can open: a link-local
// address needs its interface, which follows a percent sign.
std::string numberOf(const sockaddr* address, bool six) {
    const int family = address == nullptr ? AF_UNSPEC : address->sa_family;
    if (family != AF_INET && !(six && family == AF_INET6)) {
        return "";
    }
    const socklen_t length = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
    std::array<char, NI_MAXHOST> text{};
    getnameinfo(address, length, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST);
    return std::strchr(text.data(), '%') == nullptr ? text.data() : "";
}

std::vector<std::string> ownAddresses(bool six) {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) {
        return {"localhost"};
    }
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(first, freeifaddrs);
    std::vector<std::string> addresses;
    for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
        if (const std::string number = numberOf(entry->ifa_addr, six); !number.empty()) {
            addresses.push_back(number);
        }
    }
    return addresses.empty() ? std::vector<std::string>{"localhost"} : addresses;
}

} // namespace

std::string randomToken() {
    std::array<unsigned char, kTokenBytes> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        throw std::system_error(errno, std::generic_category(), "no random numbers");
    }
    std::string token;
    for (const unsigned char byte : bytes) {
        token += "0123456789abcdef"[byte >> 4];
        token += "0123456789abcdef"[byte & 15];
    }
    return token;
}

bool sameSecret(std::string_view left, std::string_view right) {
    if (left.size() != right.size()) {
        return false;
    }
    unsigned char difference = 0;
    for (std::size_t i = 0; i < left.size(); ++i) {
        difference = static_cast<unsigned char>(difference | (left[i] ^ right[i]));
    }
    return difference == 0;
}

AccessRules rulesFor(const std::string& address, int port, const std::string& token) {
    AccessRules rules{token, port, {"localhost", "127.0.0.1", "[::1]"}, !isLoopback(address)};
    rules.names.push_back(inAddress(address));
    return rules;
}

std::vector<std::string> addressesOf(const std::string& address, int port,
                                     const std::string& token) {
    const bool six = address == "::";
    const bool wildcard = six || address == "0.0.0.0";
    std::vector<std::string> urls;
    for (const std::string& own : wildcard ? ownAddresses(six) : std::vector{address}) {
        urls.push_back("http://" + inAddress(own) + ":" + std::to_string(port) +
                       "/#token=" + token);
    }
    return urls;
}

Verdict judge(const AccessRules& rules, const Credentials& credentials) {
    if (!matchesHost(rules, credentials.host)) {
        return Verdict::kForeignHost;
    }
    if (credentials.origin && !sameName(*credentials.origin, "http://" + credentials.host)) {
        return Verdict::kForeignOrigin;
    }
    return sameSecret(bearerToken(credentials.authorization), rules.token) ? Verdict::kAllowed
                                                                           : Verdict::kNoToken;
}

Tickets::Tickets(std::function<Clock::time_point()> now)
  : now_(std::move(now)) {}

std::string Tickets::issue(std::string_view path) {
    std::string text = randomToken();
    const std::lock_guard lock(mutex_);
    if (open_.size() >= kMaximumOpen) {
        open_.pop_front();
    }
    open_.push_back({text, std::string(path), now_() + kLifetime});
    return text;
}

bool Tickets::redeem(std::string_view ticket, std::string_view path) {
    const std::lock_guard lock(mutex_);
    const auto now = now_();
    while (!open_.empty() && open_.front().end <= now) {
        open_.pop_front();
    }
    const auto found = std::find_if(open_.begin(), open_.end(), [&](const Ticket& open) {
        return sameSecret(open.text, ticket) && open.path == path;
    });
    if (found == open_.end()) {
        return false;
    }
    open_.erase(found);
    return true;
}

} // namespace doccam::serve
