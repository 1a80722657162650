#include "vm/camera/usbip.h"

namespace doccam::vm {
namespace {

constexpr std::size_t kSetupOffset = 40;

Bytes reply(const Request& request, Command command, int status) {
    Bytes out;
    for (const std::uint32_t field : {static_cast<std::uint32_t>(command), request.sequence, 0U, 0U,
                                      0U, static_cast<std::uint32_t>(status)}) {
        appendBig32(out, field);
    }
    return out;
}

Bytes submitHeader(const Request& request, int status, std::uint32_t actual,
                   std::uint32_t packets) {
    Bytes out = reply(request, Command::kSubmitReply, status);
    appendBig32(out, actual);
    appendBig32(out, 0);
    appendBig32(out, packets);
    out.resize(kHeaderBytes);
    return out;
}

} // namespace

Request parseRequest(ByteView header) {
    const ByteView setup = header.subspan(kSetupOffset);
    Request request;
    request.command = static_cast<Command>(big32(header, 0));
    request.sequence = big32(header, 4);
    request.toHost = big32(header, 12) != 0;
    request.endpoint = big32(header, 16);
    request.unlinked = big32(header, 20);
    request.length = big32(header, 24);
    request.packets = big32(header, 32);
    request.setup = {setup[0], setup[1], static_cast<std::uint16_t>(little(setup, 2, 2)),
                     static_cast<std::uint16_t>(little(setup, 4, 2)),
                     static_cast<std::uint16_t>(little(setup, 6, 2))};
    return request;
}

Packet parsePacket(ByteView packet) {
    return {big32(packet, 0), big32(packet, 4), 0};
}

Bytes submitReply(const Request& request, int status, std::uint32_t actual) {
    return submitHeader(request, status, actual, 0);
}

Bytes unlinkReply(const Request& request, int status) {
    Bytes out = reply(request, Command::kUnlinkReply, status);
    out.resize(kHeaderBytes);
    return out;
}

Bytes isochronousReply(const Request& request, std::span<const Packet> packets, ByteView data) {
    Bytes out = submitHeader(request, 0, static_cast<std::uint32_t>(data.size()),
                             static_cast<std::uint32_t>(packets.size()));
    out.insert(out.end(), data.begin(), data.end());
    for (const Packet& packet : packets) {
        for (const std::uint32_t field : {packet.offset, packet.length, packet.actual, 0U}) {
            appendBig32(out, field);
        }
    }
    return out;
}

} // namespace doccam::vm
