// Questions and answers of one line each, between processes of one user.
#pragma once

#include <functional>
#include <string>
#include <thread>

namespace doccam::virtualcam {

// Answers lines that come to a socket in the file system, one after the other, on a thread of its
// own.
class LineSocket {
  public:
    using Answer = std::function<std::string(const std::string& line)>;

    // Throws std::runtime_error when there can be no socket at path, or there is one already.
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

// The answer to line from whoever serves the socket at path. Throws std::runtime_error when nobody
// does.
std::string ask(const std::string& path, const std::string& line);

} // namespace doccam::virtualcam
