// The routes and handlers of requests that have been let in.
#pragma once

#include "serve/owned_descriptor.h"

#include <httplib.h>

#include <string>

namespace doccam::serve {

// cpp-httplib's server without its accepting: a reception hands the connections over, each with one
// request.
class RequestServer : public httplib::Server {
  public:
    RequestServer() = default;
    // Closes the port.
    ~RequestServer() override;
    RequestServer(const RequestServer&) = delete;
    RequestServer& operator=(const RequestServer&) = delete;

    // Takes the port, or any free one for 0, and returns it; 0 when that fails.
    int takePort(const std::string& address, int port);

    int listener() const { return svr_sock_; }

    // Answers the request that begins with text, and goes on at the socket. Any thread.
    void process(const OwnedDescriptor& socket, std::string text);

    // Ends answers that go on.
    void stopStreams();

  private:
    OwnedDescriptor listening_;
};

} // namespace doccam::serve
