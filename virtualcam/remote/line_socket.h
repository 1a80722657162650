// Requests and replies of one line each, between processes of one user.
#pragma once

#include <functional>
#include <string>
#include <thread>

namespace doccam::virtualcam {

// Answers lines arriving at a Unix socket, one after another, on its own thread.
class LineSocket {
  public:
    using Answer = std::function<std::string(const std::string& line)>;

    // Throws std::runtime_error if there is already a socket at path, or none can be created.
    LineSocket(const std::string& path, Answer answer);
    // Ends the thread and removes the socket.
    ~LineSocket();
    LineSocket(const LineSocket&) = delete;
    LineSocket& operator=(const LineSocket&) = delete;

  private:
    void serve() const;

    std::string path_;
    Answer answer_;
    int socket_;
    std::thread thread_;
};

// The reply to line from the process that serves the socket at path. Throws std::runtime_error if
// none does.
std::string ask(const std::string& path, const std::string& line);

} // namespace doccam::virtualcam
