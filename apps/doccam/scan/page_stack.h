// The pages of a scan: stills in the work folder of the future PDF.
#pragma once

#include "camera/camera_session.h"
#include "host/output_file.h"

#include <string>
#include <vector>

namespace doccam::host {

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

} // namespace doccam::host
