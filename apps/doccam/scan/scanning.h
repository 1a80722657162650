// Taking page after page, at Enter or hands-free.
#pragma once

#include "camera/camera_session.h"
#include "scan/page_stack.h"

namespace doccam::host {

struct ScanPlan {
    bool automatic = false;
    int pages = 0;      // 0: until the user ends it
    bool whole = false; // the whole frame instead of the sheet
};

// Fills the stack as planned and prints progress on standard error: a page is named there once it
// is kept. Throws Failure if the camera fails or a page cannot be kept, Interruption when the
// process is asked to end.
void scanPages(CameraSession& session, PageStack& stack, const ScanPlan& plan);

} // namespace doccam::host
