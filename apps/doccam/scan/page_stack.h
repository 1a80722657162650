// The pages of a scan, in a document that keeps them.
#pragma once

#include "pages/page_renderer.h"
#include "pages/spool/page_document.h"
#include "scan/page_source.h"

#include <cstddef>
#include <functional>
#include <string>

namespace doccam::host {

// One thread. All of it throws Failure.
class PageStack {
  public:
    using Note = std::function<void(std::size_t pages)>;

    // work is the path of a file for stills. Pages are rendered as they are added; note is called
    // with each new number of pages.
    PageStack(CameraSession& session, PageDocument& document, PageRenderer& renderer,
              const PageWay& way, std::string work, Note note);

    // What would become a page of the next frame.
    PageDraft draft();
    // The same of a frame of that size that has come already, and in which the sheet has been
    // found; stills of the library are taken of the next.
    PageDraft draft(FrameFile frame, cv::Size size, const std::optional<FoundSheet>& sheet);

    // These are on disk, or have failed, when they return. Adds the draft as the last page.
    void add(const PageDraft& draft);
    // Puts the draft in the place of the last page.
    void retakeLast(const PageDraft& draft);
    void dropLast();

    // The frame of the last page; empty without pages, or if it is damaged.
    cv::Mat lastFrame() const;
    // Whether that frame shows its sheet alone.
    bool lastIsCropped() const;

    std::size_t count() const { return document_.pages().size(); }

  private:
    CameraSession& session_;
    PageDocument& document_;
    PageRenderer& renderer_;
    const PageWay way_;
    const std::string work_;
    const Note note_;
};

} // namespace doccam::host
