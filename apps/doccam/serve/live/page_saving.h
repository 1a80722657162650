// Taking a page according to the settings.
#pragma once

#include "camera/camera_session.h"
#include "serve/commands/requests.h"

#include <string>

namespace doccam::serve {

// Makes a page of the session's next frame with the page engine and saves it as a JPEG at path.
// Throws NoSheet if there is no sheet to crop to, Refused if it cannot be written.
void savePage(host::CameraSession& session, const Settings& settings, const std::string& path);

// Saves a still of the library. Throws NoSheet, and what the session throws.
void saveStill(host::CameraSession& session, const Settings& settings, const std::string& path);

} // namespace doccam::serve
