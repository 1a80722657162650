// A server that strangers cannot fill: a short head, a short time, a short queue.
#pragma once

#include <httplib.h>

namespace doccam::serve {

// Each connection carries one request, within the limits of a ConnectionStream. When all threads
// have work, newcomers wait outside the process.
class GuardedServer : public httplib::Server {
  public:
    explicit GuardedServer(std::size_t threads);

  private:
    bool process_and_close_socket(socket_t socket) override;
};

} // namespace doccam::serve
