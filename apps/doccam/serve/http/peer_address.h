// Where a connection comes from, and which of many has to leave.
#pragma once

#include <sys/socket.h>

#include <array>
#include <compare>
#include <cstddef>
#include <optional>
#include <vector>

namespace doccam::serve {

// An IPv4 address, or the part of an IPv6 address that one household has to itself.
struct PeerAddress {
    std::array<unsigned char, 8> bytes{};
    bool six = false;

    auto operator<=>(const PeerAddress&) const = default;
};

PeerAddress peerAddressOf(const sockaddr_storage& address);

struct RoomLimits {
    std::size_t places = 256;
    std::size_t placesPerAddress = 64;
};

// Which of those waiting, oldest first, leaves for a newcomer: none while there is room; the oldest
// from the same address when that has all its places; else the oldest from the address with the
// most. So the silent ones make room, and nobody is kept out by those who came before.
std::optional<std::size_t> leaverFor(const PeerAddress& newcomer,
                                     const std::vector<PeerAddress>& waiting,
                                     const RoomLimits& limits);

} // namespace doccam::serve
