// A connection that has so long to say the rest of its request, and to take the answer.
#pragma once

#include <httplib.h>

#include <chrono>
#include <cstddef>
#include <string>

namespace doccam::serve {

struct ConnectionLimits {
    std::chrono::milliseconds patience{5000};      // for the whole request from now on
    std::chrono::milliseconds writePatience{5000}; // for a reader that takes nothing
};

// Reading fails when the time is over; the answer may take as long as the reader goes on taking it.
// A peer that has said all and closed its side still takes its answer. Does not close the socket.
class ConnectionStream : public httplib::Stream {
  public:
    // said was read before, and is read again first.
    ConnectionStream(socket_t socket, std::string said, const ConnectionLimits& limits);

    bool is_readable() const override;
    // Whether the peer takes something in time.
    bool is_writable() const override;
    ssize_t read(char* bytes, std::size_t count) override;
    ssize_t write(const char* bytes, std::size_t count) override;
    // Unknown: nothing asks for them.
    void get_remote_ip_and_port(std::string& address, int& port) const override;
    void get_local_ip_and_port(std::string& address, int& port) const override;

    socket_t socket() const override { return socket_; }

  private:
    using Clock = std::chrono::steady_clock;

    socket_t socket_;
    std::chrono::milliseconds writePatience_;
    Clock::time_point deadline_;
    std::string said_;
    std::size_t next_ = 0; // of what was said and not yet read
};

} // namespace doccam::serve
