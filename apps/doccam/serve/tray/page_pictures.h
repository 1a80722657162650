// The pictures of the tray's pages, made of their frames when they are first wanted.
#pragma once

#include "pages/page_renderer.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace doccam::serve {

// Any thread, except where noted. Throws host::Failure for damaged frames and full disks.
class PagePictures {
  public:
    // Writes into folder. Both must outlive the object.
    PagePictures(const host::PageDocument& document, const std::string& folder)
      : renderer_(document, folder) {}

    // Begins to make a picture that will soon be wanted.
    void begin(const host::KeptPage& page) { renderer_.begin(page); }

    std::shared_ptr<const host::PageFile> picture(const host::KeptPage& page) {
        return renderer_.finish(page);
    }

    // The bytes of a JPEG, 240 pixels along its longer side.
    std::shared_ptr<const std::string> thumbnail(const host::KeptPage& page);

    // The page has gone, or is to be made by another recipe.
    void forget(const host::KeptPage& page);

    // Ends all waiting.
    void close() { renderer_.close(); }

  private:
    host::PageRenderer renderer_;
    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<const std::string>> thumbnails_;
};

} // namespace doccam::serve
