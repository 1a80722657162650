// The PDF of all pages, made beside the commands.
#pragma once

#include "serve/commands/command_queue.h"
#include "serve/owned_thread.h"
#include "serve/tray/page_store.h"

#include <string>

namespace doccam::serve {

// Makes one document at a time on a thread of its own: the library allows no more, and each takes
// as much memory as its pages. Any thread asks.
class DocumentMaker {
  public:
    // Documents that wait while one is made.
    static constexpr std::size_t kMaximumWaiting = 3;

    explicit DocumentMaker(PageStore& pages);
    ~DocumentMaker();
    DocumentMaker(const DocumentMaker&) = delete;
    DocumentMaker& operator=(const DocumentMaker&) = delete;

    // Waits for a PDF of the pages as they are when it is begun, and returns its path; the caller
    // removes it. Throws Busy when too many wait or after close(), TrayError when none can be made.
    std::string make();

    // Drops what is waiting and refuses what comes.
    void close() { queue_.close(); }

  private:
    std::string write();

    PageStore& pages_;
    CommandQueue queue_;
    OwnedThread thread_;
};

} // namespace doccam::serve
