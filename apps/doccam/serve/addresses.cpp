#include "serve/addresses.h"

#include "serve/access.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>

#include <array>
#include <cstring>
#include <memory>

namespace doccam::serve {
namespace {

std::vector<std::string> ownAddresses() {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) {
        return {};
    }
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(first, freeifaddrs);
    std::vector<std::string> addresses;
    for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr != nullptr && entry->ifa_addr->sa_family == AF_INET) {
            sockaddr_in address{};
            std::memcpy(&address, entry->ifa_addr, sizeof address);
            std::array<char, INET_ADDRSTRLEN> text{};
            inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size());
            addresses.emplace_back(text.data());
        }
    }
    return addresses;
}

} // namespace

std::vector<std::string> addressesOf(const std::string& address, int port,
                                     const std::string& token) {
    const bool wildcard = address == "0.0.0.0" || address == "::";
    std::vector<std::string> urls;
    for (const std::string& own : wildcard ? ownAddresses() : std::vector{address}) {
        urls.push_back("http://" + inAddress(own) + ":" + std::to_string(port) +
                       "/?token=" + token);
    }
    return urls;
}

} // namespace doccam::serve
