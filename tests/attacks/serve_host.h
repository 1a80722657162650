// doccam serve on a virtual camera, accessed through plain sockets.
#pragma once

#include "hosts/running_program.h"
#include "support/scratch_folder.h"

#include <cstddef>
#include <string>
#include <vector>

namespace doccam::test {

// A client that sends arbitrary bytes.
class Visitor {
  public:
    explicit Visitor(int port);
    ~Visitor();
    Visitor(Visitor&& other) noexcept;
    Visitor& operator=(Visitor&&) = delete;
    Visitor(const Visitor&) = delete;
    Visitor& operator=(const Visitor&) = delete;

    // False if the server does not accept everything.
    bool say(const std::string& text) const;
    // Shuts down sending; receiving still works.
    void endSaying() const;
    // Everything received until the connection ends, or until text has arrived.
    std::string hear(const std::string& text = "") const;
    // Whether nothing has been received, not even the end.
    bool isWaiting() const;

  private:
    int socket_;
};

struct ServeSetting {
    int stackKb = 8192;  // the server's stack limit
    std::string state{}; // its state folder; empty: its own
    bool confined = true;
    std::vector<std::string> within{};  // a command to run the program in
    std::vector<std::string> options{}; // of serve
};

class ServeHost {
  public:
    explicit ServeHost(const ServeSetting& setting = {});

    Visitor visitor() const { return Visitor(port_); }

    // The complete response to one request, given verbatim without its final empty line.
    std::string ask(const std::string& head) const;
    // The request line and the headers that each request needs.
    std::string head(const std::string& line) const;
    // The same with the token.
    std::string ownHead(const std::string& line) const;

    // The complete response to a command.
    std::string order(const std::string& name, const std::string& json) const;

    const std::string& token() const { return token_; }

    std::string stateFolder() const { return folder_.file("state") + "/doccam"; }

    // The socket that controls its camera.
    std::string control() const { return folder_.file("control"); }

    // The folder for temporary files.
    std::string temporaryFolder() const { return folder_.file("tmp"); }

    // The pages' folder in it.
    std::string pagesFolder() const;

    std::size_t residentKb() const;
    std::size_t descriptors() const;

    // Asks the server to end, and returns its exit status.
    int end();

    // Kills it and waits for its end.
    void kill();

  private:
    std::string processFile(const std::string& name) const;

    ScratchFolder folder_;
    RunningProgram program_;
    std::string process_;
    std::string token_;
    int port_ = 0;
};

} // namespace doccam::test
