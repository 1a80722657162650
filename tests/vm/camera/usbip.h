// The USB/IP messages between the kernel's virtual host controller and a device.
#pragma once

#include "vm/camera/bytes.h"

namespace doccam::vm {

inline constexpr std::size_t kHeaderBytes = 48;
inline constexpr std::size_t kPacketBytes = 16;

enum class Command : std::uint32_t {
    kSubmit = 1,
    kUnlink = 2,
    kSubmitReply = 3,
    kUnlinkReply = 4,
};

// The eight-byte setup packet of a transfer on endpoint 0.
struct Setup {
    std::uint8_t type = 0;
    std::uint8_t request = 0;
    std::uint16_t value = 0;
    std::uint16_t index = 0;
    std::uint16_t length = 0;

    bool toHost() const { return (type & 0x80U) != 0; }
};

struct Request {
    Command command = Command::kSubmit;
    std::uint32_t sequence = 0;
    bool toHost = false;
    std::uint32_t endpoint = 0;
    std::uint32_t length = 0;   // of the transfer's data, in bytes
    std::uint32_t packets = 0;  // of an isochronous transfer
    std::uint32_t unlinked = 0; // the sequence number of the request to cancel
    Setup setup;
};

// One packet of an isochronous transfer: its place in the host's buffer, and the bytes filled.
struct Packet {
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
    std::uint32_t actual = 0;
};

// header has kHeaderBytes, packet kPacketBytes.
Request parseRequest(ByteView header);
Packet parsePacket(ByteView packet);

// status is 0 or a negative errno value. Data for the host follows the header.
Bytes submitReply(const Request& request, int status, std::uint32_t actual);
Bytes unlinkReply(const Request& request, int status);

// The whole reply to an isochronous transfer; data holds the packets' contents without gaps.
Bytes isochronousReply(const Request& request, std::span<const Packet> packets, ByteView data);

} // namespace doccam::vm
