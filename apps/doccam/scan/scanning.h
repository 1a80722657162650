// Taking page after page, at Enter or hands-free.
#pragma once

#include "camera/camera_session.h"
#include "host/output_file.h"

#include <string>
#include <vector>

namespace doccam::host {

// A page of a scan: a still in the work folder of the future PDF.
struct ScannedPage {
    std::string path;
    int width = 0;
    int height = 0;
    bool cropped = false;
};

class PageStack {
  public:
    PageStack(CameraSession& session, OutputFile& file)
      : session_(session)
      , file_(file) {}

    // Takes the next page, whole or cropped to the sheet that the session found last. Throws
    // Failure if that fails.
    const ScannedPage& take(bool crop);

    // Discards the last page.
    void discardLast();

    const std::vector<ScannedPage>& pages() const { return pages_; }

  private:
    CameraSession& session_;
    OutputFile& file_;
    std::vector<ScannedPage> pages_;
};

struct ScanPlan {
    bool automatic = false;
    int pages = 0;      // 0: until the user ends it
    bool whole = false; // the whole frame instead of the sheet
};

// Fills the stack as planned and prints progress on standard error. Throws Failure if the camera
// fails, Interruption when the process is asked to end.
void scanPages(CameraSession& session, PageStack& stack, const ScanPlan& plan);

} // namespace doccam::host
