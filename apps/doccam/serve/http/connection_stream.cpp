#include "serve/http/connection_stream.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

namespace doccam::serve {
namespace {

bool becomes(socket_t socket, short event, std::chrono::milliseconds patience) {
    pollfd state{socket, event, 0};
    int ready = 0;
    do {
        ready = poll(&state, 1, static_cast<int>(std::max<long>(patience.count(), 0)));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

bool peerIsThere(socket_t socket) {
    char next = 0;
    const ssize_t count = recv(socket, &next, 1, MSG_PEEK | MSG_DONTWAIT);
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK));
}

} // namespace

ConnectionStream::ConnectionStream(socket_t socket, const ConnectionLimits& limits)
  : socket_(socket)
  , writePatience_(limits.writePatience)
  , deadline_(Clock::now() + limits.patience)
  , headLeft_(limits.longestHead) {}

bool ConnectionStream::awaitMore() const {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now());
    return left.count() > 0 && becomes(socket_, POLLIN, left);
}

bool ConnectionStream::is_readable() const {
    return next_ < end_ || awaitMore();
}

bool ConnectionStream::is_writable() const {
    return becomes(socket_, POLLOUT, writePatience_) && peerIsThere(socket_);
}

ssize_t ConnectionStream::read(char* bytes, std::size_t count) {
    if (next_ == end_) {
        if (!awaitMore()) {
            return -1;
        }
        const ssize_t got = recv(socket_, buffer_.data(), buffer_.size(), MSG_DONTWAIT);
        if (got <= 0) {
            return got;
        }
        next_ = 0;
        end_ = static_cast<std::size_t>(got);
    }
    count = std::min(count, end_ - next_);
    if (inHead_) {
        if (count > headLeft_) {
            return -1;
        }
        headLeft_ -= count;
    }
    std::copy_n(buffer_.data() + next_, count, bytes);
    next_ += count;
    return static_cast<ssize_t>(count);
}

ssize_t ConnectionStream::write(const char* bytes, std::size_t count) {
    return is_writable() ? send(socket_, bytes, count, MSG_DONTWAIT | MSG_NOSIGNAL) : -1;
}

void ConnectionStream::get_remote_ip_and_port(std::string& /*address*/, int& /*port*/) const {}

void ConnectionStream::get_local_ip_and_port(std::string& /*address*/, int& /*port*/) const {}

} // namespace doccam::serve
