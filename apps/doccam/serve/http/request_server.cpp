#include "serve/http/request_server.h"

#include "serve/http/connection_stream.h"

#include <sys/socket.h>

#include <algorithm>
#include <utility>

namespace doccam::serve {

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
