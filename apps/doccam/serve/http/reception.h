// Where connections wait until they have said what they want.
#pragma once

#include "serve/http/peer_address.h"
#include "serve/http/request_head.h"
#include "serve/owned_descriptor.h"
#include "serve/owned_thread.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <list>
#include <optional>
#include <string>

namespace doccam::serve {

struct ReceptionLimits {
    std::size_t longestHead = std::size_t{16} * 1024; // first line and headers together
    std::chrono::milliseconds headPatience{5000};     // for a whole head from the beginning
    std::chrono::milliseconds leavePatience{1000};    // for a client to take its answer and close
    RoomLimits room{};
};

// What becomes of a request whose head is whole. Both are called on the reception's thread and must
// not wait.
struct Desk {
    // The bytes of an answer that needs no handler: a refusal, a small file.
    std::function<std::optional<std::string>(const RequestHead&)> answerAtOnce;
    // Takes the connection over, with a plain head and what has come of the body; otherwise returns
    // the bytes of a refusal.
    std::function<std::optional<std::string>(const RequestHead&, OwnedDescriptor& socket,
                                             std::string body)>
        handOver;
};

// One thread accepts and reads heads, so that a slow or silent connection costs a descriptor and a
// little memory but keeps nobody waiting.
class Reception {
  public:
    // listener is listened at and outlives the reception. Throws std::system_error.
    Reception(int listener, Desk desk, const ReceptionLimits& limits = {});
    ~Reception();
    Reception(const Reception&) = delete;
    Reception& operator=(const Reception&) = delete;

  private:
    using Clock = std::chrono::steady_clock;

    struct Visitor {
        OwnedDescriptor socket;
        PeerAddress peer;
        Clock::time_point deadline;
        std::string said{};
        bool leaving = false; // has its answer; what it still says is thrown away
        std::size_t thrownAway = 0;
    };

    void run();
    bool await();
    int patience() const;
    void acceptSome();
    bool acceptOne();
    void makeRoom(const PeerAddress& newcomer);
    // Each returns whether the visitor stays.
    bool listenTo(Visitor& visitor) const;
    bool take(Visitor& visitor, const char* bytes, std::size_t count) const;
    bool serve(Visitor& visitor, std::size_t headBytes) const;
    bool sendAway(Visitor& visitor, const std::string& answer) const;

    const int listener_;
    const Desk desk_;
    const ReceptionLimits limits_;
    OwnedDescriptor wake_;
    std::list<Visitor> visitors_; // oldest first
    Clock::time_point acceptsAgain_;
    OwnedThread thread_;
};

} // namespace doccam::serve
