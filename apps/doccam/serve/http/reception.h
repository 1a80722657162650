// Receiving connections until their request's head is complete.
#pragma once

#include "base/unique_fd.h"
#include "serve/http/request_head.h"
#include "serve/owned_thread.h"

#include <sys/socket.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace doccam::serve {

// An IPv4 address, or the /64 network of an IPv6 address, which usually belongs to one household.
struct PeerAddress {
    std::array<unsigned char, 8> bytes{};
    bool six = false;

    bool operator<(const PeerAddress& other) const {
        return std::tie(six, bytes) < std::tie(other.six, other.bytes);
    }

    bool operator==(const PeerAddress&) const = default;
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

struct ReceptionLimits {
    std::size_t longestHead = std::size_t{16} * 1024; // first line and headers together
    std::chrono::milliseconds headPatience{5000};     // for a complete head, from the start
    std::chrono::milliseconds leavePatience{1000};    // for a client to read its response and close
    RoomLimits room{};
};

// Handles requests with a complete head. Both are called on the reception's thread and must not
// block.
struct Desk {
    // The bytes of a response that needs no handler: a refusal or a small file.
    std::function<std::optional<std::string>(const RequestHead&)> answerAtOnce;
    // Takes over the connection, with a plain head and the received part of the body, or returns
    // the bytes of a refusal.
    std::function<std::optional<std::string>(const RequestHead&, UniqueFd& socket,
                                             std::string body)>
        handOver;
};

// One thread accepts and reads heads, so that a slow or silent connection costs a descriptor and a
// little memory but delays nobody.
class Reception {
  public:
    // listener must be listening and outlive the reception. Throws std::system_error.
    Reception(int listener, Desk desk, const ReceptionLimits& limits = {});
    ~Reception();

  private:
    using Clock = std::chrono::steady_clock;

    struct Visitor {
        UniqueFd socket;
        PeerAddress peer;
        Clock::time_point deadline;
        std::string said{};
        bool leaving = false; // has its response; further input is discarded
        std::size_t thrownAway = 0;
    };

    void run();
    bool await();
    int patience() const;
    bool acceptOne();
    void makeRoom(const PeerAddress& newcomer);
    // Each returns whether the visitor is kept.
    bool listenTo(Visitor& visitor) const;
    bool take(Visitor& visitor, const char* bytes, std::size_t count) const;
    bool serve(Visitor& visitor, std::size_t headBytes) const;
    bool sendAway(Visitor& visitor, const std::string& answer) const;

    const int listener_;
    const Desk desk_;
    const ReceptionLimits limits_;
    UniqueFd wake_;
    std::list<Visitor> visitors_; // oldest first
    Clock::time_point acceptsAgain_;
    std::jthread thread_;
};

} // namespace doccam::serve
