// A connection's origin, and choosing which connection to drop.
#pragma once

#include <sys/socket.h>

#include <array>
#include <cstddef>
#include <optional>
#include <tuple>
#include <vector>

namespace doccam::serve {

// An IPv4 address, or the /64 network of an IPv6 address, which usually belongs to one household.
struct PeerAddress {
    std::array<unsigned char, 8> bytes{};
    bool six = false;

    bool operator==(const PeerAddress&) const = default;

    bool operator<(const PeerAddress& other) const {
        return std::tie(bytes, six) < std::tie(other.bytes, other.six);
    }
};

PeerAddress peerAddressOf(const sockaddr_storage& address);

struct RoomLimits {
    std::size_t places = 256;
    std::size_t placesPerAddress = 64;
};

// Which of the waiting connections, oldest first, is dropped for a newcomer: none while there is
// room; the oldest from the same address if that has used up its share; otherwise the oldest from
// the address with the most. So silent ones make room, and earlier ones cannot keep anyone out.
std::optional<std::size_t> leaverFor(const PeerAddress& newcomer,
                                     const std::vector<PeerAddress>& waiting,
                                     const RoomLimits& limits);

} // namespace doccam::serve
