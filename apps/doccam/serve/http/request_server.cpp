#include "serve/http/request_server.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace doccam::serve {
namespace {

constexpr std::size_t kPiece = 4096;

// Not ready if the connection is broken or closed on both sides.
bool becomes(socket_t socket, short event, std::chrono::milliseconds patience) {
    pollfd state{socket, event, 0};
    int ready = 0;
    do {
        ready = poll(&state, 1, static_cast<int>(std::max<long>(patience.count(), 0)));
    } while (ready < 0 && errno == EINTR);
    return ready > 0 && (state.revents & event) != 0 &&
           (event == POLLIN || (state.revents & (POLLERR | POLLHUP)) == 0);
}

} // namespace

ConnectionStream::ConnectionStream(socket_t socket, std::string said,
                                   const ConnectionLimits& limits)
  : socket_(socket)
  , writePatience_(limits.writePatience)
  , deadline_(Clock::now() + limits.patience)
  , said_(std::move(said)) {}

bool ConnectionStream::is_readable() const {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now());
    return next_ < said_.size() || (left.count() > 0 && becomes(socket_, POLLIN, left));
}

bool ConnectionStream::is_writable() const {
    return becomes(socket_, POLLOUT, writePatience_);
}

ssize_t ConnectionStream::read(char* bytes, std::size_t count) {
    if (next_ == said_.size()) {
        if (!is_readable()) {
            return -1;
        }
        said_.resize(kPiece);
        const ssize_t got = recv(socket_, said_.data(), said_.size(), MSG_DONTWAIT);
        next_ = 0;
        said_.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got <= 0) {
            return got;
        }
    }
    count = std::min(count, said_.size() - next_);
    std::copy_n(said_.data() + next_, count, bytes);
    next_ += count;
    return static_cast<ssize_t>(count);
}

ssize_t ConnectionStream::write(const char* bytes, std::size_t count) {
    return is_writable() ? send(socket_, bytes, count, MSG_DONTWAIT | MSG_NOSIGNAL) : -1;
}

void ConnectionStream::get_remote_ip_and_port(std::string& /*address*/, int& /*port*/) const {}

void ConnectionStream::get_local_ip_and_port(std::string& /*address*/, int& /*port*/) const {}

RequestServer::~RequestServer() {
    stopStreams();
}

int RequestServer::takePort(const std::string& address, int port) {
    const int taken =
        port == 0 ? bind_to_any_port(address) : (bind_to_port(address, port) ? port : 0);
    if (taken > 0) {
        listening_ = UniqueFd(svr_sock_);
        // cpp-httplib has a backlog of five connections; a further one's first packet is lost.
        ::listen(svr_sock_, SOMAXCONN);
    }
    return std::max(taken, 0);
}

void RequestServer::process(const UniqueFd& socket, std::string text) {
    ConnectionStream stream(socket.get(), std::move(text), {});
    bool closed = false;
    process_request(stream, true, closed, {});
    shutdown(socket.get(), SHUT_RDWR);
}

// cpp-httplib continues a response while it has a listening socket.
void RequestServer::stopStreams() {
    svr_sock_ = INVALID_SOCKET;
}

} // namespace doccam::serve
