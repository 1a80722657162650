// Taking a page according to the settings.
#pragma once

#include "camera/camera_session.h"
#include "scan/page_source.h"
#include "serve/commands/requests.h"

#include <string>

namespace doccam::serve {

// What becomes a page of the session's next frame: by the page engine, or a still of the library,
// which is written to work and removed. Throws NoSheet if there is no sheet to crop to, and what
// the session throws.
host::PageDraft draftPage(host::CameraSession& session, const Settings& settings,
                          const std::string& work);

} // namespace doccam::serve
