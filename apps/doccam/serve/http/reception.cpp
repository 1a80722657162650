#include "serve/http/reception.h"

#include "serve/http/plain_answer.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <map>
#include <system_error>
#include <utility>

namespace doccam::serve {
namespace {

constexpr std::size_t kHeardAtOnce = 4096;
constexpr std::size_t kMaximumThrownAway = std::size_t{256} * 1024;
// Per round, so that existing connections are served before more are accepted.
constexpr int kAcceptedAtOnce = 16;
constexpr std::chrono::milliseconds kWithoutDescriptors{100};

int makeWake() {
    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "no event descriptor");
    }
    return descriptor;
}

// Non-blocking, as a connection may be gone before it is accepted.
int withoutWaiting(int listener) {
    fcntl(listener, F_SETFL, fcntl(listener, F_GETFL) | O_NONBLOCK);
    return listener;
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
    const auto others = std::count(waiting.begin(), waiting.end(), newcomer);
    if (static_cast<std::size_t>(others) >= limits.placesPerAddress) {
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

Reception::Reception(int listener, Desk desk, const ReceptionLimits& limits)
  : listener_(withoutWaiting(listener))
  , desk_(std::move(desk))
  , limits_(limits)
  , wake_(makeWake())
  , thread_(ownedThread([this] { run(); })) {}

Reception::~Reception() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(wake_.get(), &one, sizeof one);
}

void Reception::run() {
    while (await()) {
        for (int i = 0; i < kAcceptedAtOnce && acceptOne(); ++i) {
        }
    }
}

int Reception::patience() const {
    auto next = acceptsAgain_ == Clock::time_point() ? Clock::time_point::max() : acceptsAgain_;
    for (const Visitor& visitor : visitors_) {
        next = std::min(next, visitor.deadline);
    }
    if (next == Clock::time_point::max()) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

// Waits for input and reads it. False when the reception ends.
bool Reception::await() {
    std::vector<pollfd> states{{wake_.get(), POLLIN, 0}};
    for (const Visitor& visitor : visitors_) {
        states.push_back({visitor.socket.get(), POLLIN, 0});
    }
    if (acceptsAgain_ == Clock::time_point()) {
        states.push_back({listener_, POLLIN, 0});
    }
    poll(states.data(), states.size(), patience());
    if (states[0].revents != 0) {
        return false;
    }
    const auto now = Clock::now();
    if (acceptsAgain_ <= now) {
        acceptsAgain_ = {};
    }
    auto state = std::next(states.begin());
    for (auto visitor = visitors_.begin(); visitor != visitors_.end(); ++state) {
        const bool stays = visitor->deadline > now && (state->revents == 0 || listenTo(*visitor));
        visitor = stays ? std::next(visitor) : visitors_.erase(visitor);
    }
    return true;
}

bool Reception::acceptOne() {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    UniqueFd socket(accept4(listener_, reinterpret_cast<sockaddr*>(&address), &length,
                            SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket.isOpen()) {
        if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
            acceptsAgain_ = Clock::now() + kWithoutDescriptors;
            if (!visitors_.empty()) {
                visitors_.pop_front();
            }
        }
        return errno == ECONNABORTED || errno == EINTR;
    }
    const PeerAddress peer = peerAddressOf(address);
    makeRoom(peer);
    visitors_.push_back({std::move(socket), peer, Clock::now() + limits_.headPatience});
    if (!listenTo(visitors_.back())) {
        visitors_.pop_back();
    }
    return true;
}

void Reception::makeRoom(const PeerAddress& newcomer) {
    std::vector<PeerAddress> waiting;
    waiting.reserve(visitors_.size());
    for (const Visitor& visitor : visitors_) {
        waiting.push_back(visitor.peer);
    }
    if (const auto leaver = leaverFor(newcomer, waiting, limits_.room)) {
        visitors_.erase(std::next(visitors_.begin(), static_cast<std::ptrdiff_t>(*leaver)));
    }
}

bool Reception::listenTo(Visitor& visitor) const {
    std::array<char, kHeardAtOnce> bytes;
    const ssize_t count = recv(visitor.socket.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (count <= 0) {
        return count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR);
    }
    return take(visitor, bytes.data(), static_cast<std::size_t>(count));
}

bool Reception::take(Visitor& visitor, const char* bytes, std::size_t count) const {
    if (visitor.leaving) {
        visitor.thrownAway += count;
        return visitor.thrownAway <= kMaximumThrownAway;
    }
    visitor.said.append(bytes, count);
    const auto headBytes = headLength(visitor.said);
    if (headBytes.value_or(visitor.said.size()) > limits_.longestHead) {
        return sendAway(visitor, refusalBytes({431, "the head of the request is too long"}, {}));
    }
    if (headBytes) {
        return serve(visitor, *headBytes);
    }
    if (!canBeHead(visitor.said)) {
        return sendAway(visitor, refusalBytes(notUnderstood(), {}));
    }
    return true;
}

bool Reception::serve(Visitor& visitor, std::size_t headBytes) const {
    const auto head = parseHead(std::string_view(visitor.said).substr(0, headBytes));
    if (!head) {
        return sendAway(visitor, refusalBytes(notUnderstood(), {}));
    }
    if (const auto answer = desk_.answerAtOnce(*head)) {
        return sendAway(visitor, *answer);
    }
    if (const auto refusal =
            desk_.handOver(*head, visitor.socket, visitor.said.substr(headBytes))) {
        return sendAway(visitor, *refusal);
    }
    return false;
}

// Closing at once with unread input would reset the connection and discard the response. A new
// connection's send buffer has room for the whole response.
bool Reception::sendAway(Visitor& visitor, const std::string& answer) const {
    visitor.said = {};
    visitor.leaving = true;
    visitor.deadline = Clock::now() + limits_.leavePatience;
    const ssize_t sent =
        send(visitor.socket.get(), answer.data(), answer.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    return sent == static_cast<ssize_t>(answer.size()) &&
           shutdown(visitor.socket.get(), SHUT_WR) == 0;
}

} // namespace doccam::serve
