#include "remote/line_socket.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace doccam::virtualcam {

namespace {

class Socket {
  public:
    explicit Socket(int descriptor)
      : descriptor_(descriptor) {}

    ~Socket() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    int get() const { return descriptor_; }

  private:
    int descriptor_;
};

int newSocket() {
    return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        throw std::runtime_error("the control socket's path is too long: " + path);
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

const sockaddr* asGeneral(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

constexpr int kForEver = -1;
constexpr int kClientPatienceMs = 5000;
constexpr int kNoDescriptor = -1; // poll ignores it

// Returns early if nothing arrives in time, or when ending is shut down.
std::string readLine(int descriptor, int patienceMs = kForEver, int ending = kNoDescriptor) {
    std::string line;
    pollfd events[] = {{descriptor, POLLIN, 0}, {ending, 0, 0}};
    char c = 0;
    while (poll(events, 2, patienceMs) > 0 && events[1].revents == 0 &&
           read(descriptor, &c, 1) == 1 && c != '\n') {
        line += c;
    }
    return line;
}

void writeLine(int descriptor, std::string line) {
    line += '\n';
    send(descriptor, line.data(), line.size(), MSG_NOSIGNAL);
}

// The program's signal handlers must not run on a thread it does not know.
std::thread startWithoutSignals(std::function<void()> work) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread(std::move(work));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

} // namespace

LineSocket::LineSocket(const std::string& path, Answer answer)
  : path_(path)
  , answer_(std::move(answer))
  , socket_(newSocket()) {
    const sockaddr_un address = addressOf(path);
    if (bind(socket_, asGeneral(address), sizeof address) != 0 || listen(socket_, 4) != 0) {
        const std::string reason = std::strerror(errno);
        close(socket_);
        throw std::runtime_error("no control socket at " + path + ": " + reason);
    }
    thread_ = startWithoutSignals([this] { serve(); });
}

LineSocket::~LineSocket() {
    shutdown(socket_, SHUT_RDWR);
    thread_.join();
    close(socket_);
    unlink(path_.c_str());
}

void LineSocket::serve() const {
    for (;;) {
        const Socket client(accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC));
        if (client.get() < 0) {
            return;
        }
        writeLine(client.get(), answer_(readLine(client.get(), kClientPatienceMs, socket_)));
    }
}

std::string ask(const std::string& path, const std::string& line) {
    const Socket socket(newSocket());
    const sockaddr_un address = addressOf(path);
    if (connect(socket.get(), asGeneral(address), sizeof address) != 0) {
        throw std::runtime_error("nobody answers at " + path);
    }
    writeLine(socket.get(), line);
    return readLine(socket.get());
}

} // namespace doccam::virtualcam
