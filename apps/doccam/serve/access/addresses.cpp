#include "serve/access/addresses.h"

#include "serve/access/access.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>

#include <array>
#include <cstring>
#include <memory>

namespace doccam::serve {
namespace {

template <typename Address>
Address as(const sockaddr* general) {
    Address address{};
    std::memcpy(&address, general, sizeof address);
    return address;
}

std::string textOf(int family, const void* bytes) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    inet_ntop(family, bytes, text.data(), text.size());
    return text.data();
}

// An interface's numeric address, or an empty text for one that no browser can open: a link-local
// address needs its interface.
std::string numberOf(const sockaddr* general, bool six) {
    if (general != nullptr && general->sa_family == AF_INET) {
        const auto address = as<sockaddr_in>(general);
        return textOf(AF_INET, &address.sin_addr);
    }
    if (six && general != nullptr && general->sa_family == AF_INET6) {
        const auto address = as<sockaddr_in6>(general);
        return IN6_IS_ADDR_LINKLOCAL(&address.sin6_addr) ? ""
                                                         : textOf(AF_INET6, &address.sin6_addr);
    }
    return "";
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

} // namespace doccam::serve
