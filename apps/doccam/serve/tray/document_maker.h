// PDFs of the tray's pages.
#pragma once

#include "serve/commands/command_queue.h"
#include "serve/owned_thread.h"
#include "serve/tray/page_store.h"

#include <string>
#include <thread>
#include <vector>

namespace doccam::serve {

struct MadeDocument {
    std::string path;
    std::vector<Page> pages;
};

// Makes one document at a time on its own thread: the library allows no more, and each takes as
// much memory as its pages. Any thread may call make().
class DocumentMaker {
  public:
    // Requests that may wait while a document is made.
    static constexpr std::size_t kMaximumWaiting = 3;

    explicit DocumentMaker(PageStore& pages);
    ~DocumentMaker();

    // Waits for a PDF of the pages as they are when it is started; the caller removes it. Throws
    // Busy if too many wait or after close(), TrayError if none can be made.
    MadeDocument make();

    // Drops waiting requests and refuses new ones.
    void close() { queue_.close(); }

  private:
    MadeDocument write();

    PageStore& pages_;
    int last_ = 0;
    CommandQueue queue_;
    std::jthread thread_;
};

} // namespace doccam::serve
