// What becomes a page of a session's next frame.
#pragma once

#include "camera/camera_session.h"
#include "documents/paper/desk.h"
#include "pages/frame_file.h"
#include "pages/recipe.h"
#include "pages/sheets.h"
#include "pages/spool/manifest.h"

#include <opencv2/core/types.hpp>

#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

// A page that is nowhere yet.
struct PageDraft {
    FrameFile frame;
    Recipe recipe;
    PageOrigin origin;
    cv::Size size;                     // of the page
    std::optional<FoundSheet> sheet{}; // in the frame
    bool cropped = false;              // to a sheet
};

struct PageWay {
    bool byEngine = true;      // otherwise a still of the library
    bool whole = false;        // the whole frame instead of the sheet
    Recipe recipe{};           // but for the corners
    std::vector<Desk> desks{}; // that the camera has been calibrated on
};

// Takes the next frame, and finds the sheet in this very frame. Without one the page is the whole
// frame. Throws what the session throws. A still is written to work and removed.
PageDraft draftPage(CameraSession& session, const PageWay& way, const std::string& work);

// A page by the engine of a frame of that size in which the sheet, if there is one, has been found.
PageDraft draftOf(FrameFile frame, cv::Size size, const std::optional<FoundSheet>& sheet,
                  const PageWay& way);

// The size of the page that recipe makes of a frame of that size.
cv::Size sizeOfPage(const Recipe& recipe, cv::Size frame);

} // namespace doccam::host
