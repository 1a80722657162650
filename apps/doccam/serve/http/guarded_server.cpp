#include "serve/http/guarded_server.h"

#include "serve/http/connection_stream.h"

#include <sys/socket.h>
#include <unistd.h>

#include <semaphore>
#include <utility>

namespace doccam::serve {
namespace {

// Each holds a descriptor while it waits for a thread.
constexpr std::ptrdiff_t kMostWaiting = 32;

class ShortQueue : public httplib::ThreadPool {
  public:
    using ThreadPool::ThreadPool;

    void enqueue(std::function<void()> work) override {
        room_.acquire();
        ThreadPool::enqueue([this, work = std::move(work)] {
            room_.release();
            work();
        });
    }

  private:
    std::counting_semaphore<kMostWaiting> room_{kMostWaiting};
};

} // namespace

GuardedServer::GuardedServer(std::size_t threads) {
    new_task_queue = [threads] { return new ShortQueue(threads); };
}

bool GuardedServer::process_and_close_socket(socket_t socket) {
    bool done = false;
    if (svr_sock_ != INVALID_SOCKET) { // else stopped while this one waited
        ConnectionStream stream(socket, {});
        bool closed = false;
        done = process_request(stream, true, closed, [&](auto& /*request*/) { stream.endHead(); });
    }
    shutdown(socket, SHUT_RDWR);
    close(socket);
    return done;
}

} // namespace doccam::serve
