// A connection that has so long, and so many bytes, to say what it wants.
#pragma once

#include <httplib.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <string>

namespace doccam::serve {

struct ConnectionLimits {
    std::size_t longestHead = std::size_t{16} * 1024; // first line and headers together
    std::chrono::milliseconds patience{5000};         // for the whole request from now on
    std::chrono::milliseconds writePatience{5000};    // for a reader that takes nothing
};

// Reading fails beyond the limits; the answer may take as long as the reader goes on taking it.
// Does not close the socket.
class ConnectionStream : public httplib::Stream {
  public:
    ConnectionStream(socket_t socket, const ConnectionLimits& limits);

    // What comes from now on is the body, whose length is limited elsewhere.
    void endHead() { inHead_ = false; }

    bool is_readable() const override;
    // Whether the peer is there and takes something in time.
    bool is_writable() const override;
    ssize_t read(char* bytes, std::size_t count) override;
    ssize_t write(const char* bytes, std::size_t count) override;
    // Unknown: nothing asks for them.
    void get_remote_ip_and_port(std::string& address, int& port) const override;
    void get_local_ip_and_port(std::string& address, int& port) const override;

    socket_t socket() const override { return socket_; }

  private:
    using Clock = std::chrono::steady_clock;

    bool awaitMore() const;

    socket_t socket_;
    std::chrono::milliseconds writePatience_;
    Clock::time_point deadline_;
    std::size_t headLeft_;
    bool inHead_ = true;
    std::array<char, 4096> buffer_{};
    std::size_t next_ = 0, end_ = 0; // of what is in the buffer and not yet read
};

} // namespace doccam::serve
