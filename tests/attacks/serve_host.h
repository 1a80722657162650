// doccam serve on a virtual camera, met through plain sockets.
#pragma once

#include "hosts/running_program.h"
#include "support/scratch_folder.h"

#include <cstddef>
#include <string>
#include <vector>

namespace doccam::test {

// A client of the server, which says what it likes.
class Visitor {
  public:
    explicit Visitor(int port);
    ~Visitor();
    Visitor(Visitor&& other) noexcept;
    Visitor& operator=(Visitor&&) = delete;
    Visitor(const Visitor&) = delete;
    Visitor& operator=(const Visitor&) = delete;

    // False when the server does not take it all.
    bool say(const std::string& text) const;
    // No more will be said; what comes is still heard.
    void endSaying() const;
    // All that comes until the connection ends, or until text has come.
    std::string hear(const std::string& text = "") const;
    // Whether nothing has come, not even the end.
    bool isWaiting() const;

  private:
    int socket_;
};

struct ServeSetting {
    int stackKb = 8192;  // that the server's threads would take
    std::string state{}; // where its state lies; empty: a folder of its own
    bool confined = true;
};

class ServeHost {
  public:
    explicit ServeHost(const ServeSetting& setting = {});

    Visitor visitor() const { return Visitor(port_); }

    // The whole answer to one request, its line and headers as they are said; an empty line
    // follows.
    std::string ask(const std::string& head) const;
    // A first line and what each request needs.
    std::string head(const std::string& line) const;
    // The same with the token.
    std::string ownHead(const std::string& line) const;

    // The whole answer to a command.
    std::string order(const std::string& name, const std::string& json) const;

    const std::string& token() const { return token_; }

    std::string stateFolder() const { return folder_.file("state") + "/doccam"; }

    // Where temporary files lie.
    std::string temporaryFolder() const { return folder_.file("tmp"); }

    // The one in it that holds the pages.
    std::string pagesFolder() const;

    std::size_t residentKb() const;
    std::size_t descriptors() const;

    // Asks the server to end, and returns its exit status.
    int end();

  private:
    std::string processFile(const std::string& name) const;

    ScratchFolder folder_;
    RunningProgram program_;
    std::string process_;
    std::string token_;
    int port_ = 0;
};

} // namespace doccam::test
