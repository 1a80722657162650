// Making the files of a document's pages, ahead of the time when they are needed.
#pragma once

#include "pages/spool/page_document.h"

#include <opencv2/core/types.hpp>

#include <condition_variable>
#include <deque>
#include <exception>
#include <map>
#include <mutex>
#include <string>
#include <thread>

namespace doccam::host {

struct PageFile {
    std::string path; // a JPEG, or in black and white a PNG
    cv::Size size;
};

// Works on a thread of its own, one page at a time. One thread calls it.
class PageRenderer {
  public:
    // Writes into folder. Both must outlive the object.
    PageRenderer(const PageDocument& document, std::string folder);
    ~PageRenderer();
    PageRenderer(const PageRenderer&) = delete;
    PageRenderer& operator=(const PageRenderer&) = delete;

    // Begins to make the page's file, unless it is begun or made.
    void begin(const KeptPage& page);

    // Waits for the page's file. Throws Failure if its frame is damaged or it cannot be written.
    PageFile finish(const KeptPage& page);

  private:
    struct Work {
        KeptPage page;
        bool done = false;
        PageFile file{};
        std::exception_ptr failure{};
    };

    void run();
    void make(Work& work) const;

    const PageDocument& document_;
    const std::string folder_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::map<std::string, Work> works_; // by frame
    std::deque<std::string> waiting_;
    bool ending_ = false;
    std::thread thread_;
};

// The bytes of a page's file, and its size in pixels. Throws Failure for a damaged frame.
std::pair<std::vector<unsigned char>, cv::Size> makePage(const PageDocument& document,
                                                         const KeptPage& page);

} // namespace doccam::host
