// The server: access control and routes.
#pragma once

#include "serve/access/access.h"
#include "serve/commands/command_queue.h"
#include "serve/commands/commands.h"
#include "serve/commands/event_feed.h"
#include "serve/http/reception.h"
#include "serve/http/request_server.h"
#include "serve/live/picture_feed.h"
#include "serve/owned_thread.h"
#include "serve/site/answers.h"
#include "serve/tray/document_maker.h"
#include "serve/tray/page_store.h"

#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace doccam::serve {

// The data sources for responses; all must outlive the server.
struct Sources {
    CommandQueue& queue;
    Commands& commands; // run only through the queue
    PageStore& pages;
    DocumentMaker& documents;
    PictureFeed& pictures;
    EventFeed& events;
    Seats& viewers;
    Seats& watchers; // of the codes in the live picture
};

class HttpServer {
  public:
    explicit HttpServer(const Sources& sources);
    // Closes the queue, the documents, the pictures and the feeds, so that requests that wait for
    // them end, and waits for all in progress.
    ~HttpServer();

    // Binds the port, or any free one for 0, and returns it. Throws Failure on failure.
    int bind(const std::string& address, int port);

    // Serves requests from now on, on its own threads. Throws std::system_error.
    void start(const AccessRules& rules);

  private:
    std::optional<std::string> answerAtOnce(const RequestHead& head);
    std::optional<std::string> handOver(const RequestHead& head, UniqueFd& socket,
                                        const std::string& body);
    void addResponses();
    void addPages();
    void addCommands();
    void noteSaved(const std::vector<Page>& pages);

    Sources sources_;
    AccessRules rules_;
    Tickets tickets_;
    Seats listeners_;
    RequestServer server_;
    CommandQueue requests_;
    std::vector<std::jthread> workers_;
    std::optional<Reception> reception_;
};

} // namespace doccam::serve
