// The routes and handlers of admitted requests, and the connections that they come on.
#pragma once

#include "base/unique_fd.h"

#include <httplib.h>

#include <chrono>
#include <cstddef>
#include <string>

namespace doccam::serve {

struct ConnectionLimits {
    std::chrono::milliseconds patience{5000};      // for the whole request from now on
    std::chrono::milliseconds writePatience{5000}; // for a client that reads nothing
};

// Reading fails after the time limit; the response may take as long as the client keeps reading it.
// A peer that has shut down its side still gets its response. Does not close the socket.
class ConnectionStream : public httplib::Stream {
  public:
    // said was read earlier and is returned first.
    ConnectionStream(socket_t socket, std::string said, const ConnectionLimits& limits);

    bool is_readable() const override;
    // Whether the peer reads something in time.
    bool is_writable() const override;
    ssize_t read(char* bytes, std::size_t count) override;
    ssize_t write(const char* bytes, std::size_t count) override;
    // Unused.
    void get_remote_ip_and_port(std::string& address, int& port) const override;
    void get_local_ip_and_port(std::string& address, int& port) const override;

    socket_t socket() const override { return socket_; }

  private:
    using Clock = std::chrono::steady_clock;

    socket_t socket_;
    std::chrono::milliseconds writePatience_;
    Clock::time_point deadline_;
    std::string said_;
    std::size_t next_ = 0; // next unread byte of the earlier ones
};

// cpp-httplib's server without its accept loop: a Reception passes it connections with one request
// each.
class RequestServer : public httplib::Server {
  public:
    RequestServer() = default;
    // Closes the port.
    ~RequestServer() override;

    // Binds the port, or any free one for 0, and returns it; 0 on failure.
    int takePort(const std::string& address, int port);

    int listener() const { return svr_sock_; }

    // Handles the request that starts with text and continues on the socket. Any thread.
    void process(const UniqueFd& socket, std::string text);

    // Ends streaming responses.
    void stopStreams();

  private:
    UniqueFd listening_;
};

} // namespace doccam::serve
