#include "serve/http/peer_address.h"

#include <netinet/in.h>

#include <algorithm>
#include <cstring>
#include <map>

namespace doccam::serve {
namespace {

std::size_t countOf(const std::vector<PeerAddress>& waiting, const PeerAddress& address) {
    return static_cast<std::size_t>(std::count(waiting.begin(), waiting.end(), address));
}

std::size_t oldestFrom(const std::vector<PeerAddress>& waiting, const PeerAddress& address) {
    return static_cast<std::size_t>(std::find(waiting.begin(), waiting.end(), address) -
                                    waiting.begin());
}

} // namespace

PeerAddress peerAddressOf(const sockaddr_storage& address) {
    constexpr std::size_t kMappedStart = 12; // offset of an IPv4 address within a mapped IPv6 one
    PeerAddress peer;
    if (address.ss_family == AF_INET) {
        sockaddr_in four{};
        std::memcpy(&four, &address, sizeof four);
        std::memcpy(peer.bytes.data(), &four.sin_addr, sizeof four.sin_addr);
    } else if (address.ss_family == AF_INET6) {
        sockaddr_in6 six{};
        std::memcpy(&six, &address, sizeof six);
        const bool mapped = IN6_IS_ADDR_V4MAPPED(&six.sin6_addr);
        peer.six = !mapped;
        std::memcpy(peer.bytes.data(), &six.sin6_addr.s6_addr[mapped ? kMappedStart : 0],
                    mapped ? sizeof(in_addr) : peer.bytes.size());
    }
    return peer;
}

std::optional<std::size_t> leaverFor(const PeerAddress& newcomer,
                                     const std::vector<PeerAddress>& waiting,
                                     const RoomLimits& limits) {
    if (countOf(waiting, newcomer) >= limits.placesPerAddress) {
        return oldestFrom(waiting, newcomer);
    }
    if (waiting.size() < limits.places) {
        return std::nullopt;
    }
    std::map<PeerAddress, std::size_t> places;
    for (const PeerAddress& address : waiting) {
        ++places[address];
    }
    const auto crowded =
        std::max_element(places.begin(), places.end(), [](const auto& left, const auto& right) {
            return left.second < right.second;
        });
    return oldestFrom(waiting, crowded->first);
}

} // namespace doccam::serve
