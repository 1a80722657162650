// Making the files of a document's pages, ahead of the time when they are needed.
#pragma once

#include "documents/paper/page_size.h"
#include "pages/spool/page_document.h"

#include <opencv2/core/types.hpp>

#include <condition_variable>
#include <deque>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace doccam::host {

// Removed with the object.
class PageFile {
  public:
    PageFile(std::string named, cv::Size pixels, const SizedPage& known)
      : path(std::move(named))
      , size(pixels)
      , sized(known) {}

    ~PageFile();
    PageFile(const PageFile&) = delete;
    PageFile& operator=(const PageFile&) = delete;

    const std::string path; // a JPEG, or in black and white a PNG
    const cv::Size size;
    const SizedPage sized;
};

// Works on a thread of its own, one page at a time. Any thread calls it.
class PageRenderer {
  public:
    // Writes into folder. Both must outlive the object.
    PageRenderer(const PageDocument& document, std::string folder);
    ~PageRenderer();
    PageRenderer(const PageRenderer&) = delete;
    PageRenderer& operator=(const PageRenderer&) = delete;

    // Begins to make the page's file, unless it is begun or made.
    void begin(const KeptPage& page);

    // Waits for the page's file. Throws Failure if its frame is damaged or it cannot be written,
    // and after close().
    std::shared_ptr<const PageFile> finish(const KeptPage& page);

    // Nobody will want the page's file as it is by this recipe; those who have it keep it.
    void forget(const KeptPage& page);

    // Makes no further file, so that nobody waits for one.
    void close();

  private:
    struct Work {
        const KeptPage page;
        bool done = false;
        std::shared_ptr<const PageFile> file{};
        std::exception_ptr failure{};
    };

    std::shared_ptr<Work> begun(const KeptPage& page);
    void run();
    void make(Work& work) const;
    void forgetFailed(const std::shared_ptr<Work>& work);

    const PageDocument& document_;
    const std::string folder_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::map<std::string, std::shared_ptr<Work>> works_; // by the files' names, less the extension
    std::deque<std::shared_ptr<Work>> waiting_;
    bool closed_ = false;
    std::thread thread_;
};

// By frame and number of changes: never that of another page or recipe.
std::string pictureName(const KeptPage& page);

struct MadePage {
    std::vector<unsigned char> bytes; // of its file
    cv::Size size;
    SizedPage sized;
};

// Throws Failure for a damaged frame.
MadePage makePage(const PageDocument& document, const KeptPage& page);

} // namespace doccam::host
