// The routes and handlers of admitted requests.
#pragma once

#include "base/unique_fd.h"

#include <httplib.h>

#include <string>

namespace doccam::serve {

// cpp-httplib's server without its accept loop: a Reception passes it connections with one request
// each.
class RequestServer : public httplib::Server {
  public:
    RequestServer() = default;
    // Closes the port.
    ~RequestServer() override;
    RequestServer(const RequestServer&) = delete;
    RequestServer& operator=(const RequestServer&) = delete;

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
