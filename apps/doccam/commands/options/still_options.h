// The options shared by all commands that take stills.
#pragma once

#include "camera/camera_session.h"
#include "camera/page_settings.h"

#include <CLI/App.hpp>

#include <memory>
#include <optional>

namespace doccam::host {

struct Context;

struct StillOptions {
    std::optional<Size> size;
    std::optional<Format> format;
    PageSettings page;
};

// --size and --format.
void addCaptureOptions(CLI::App& command, StillOptions& options);

// --rotate, --colour, --clean-edges, --clean-background, --quality.
void addPageOptions(CLI::App& command, PageSettings& page);

// Opens the chosen camera according to the options and applies the page settings.
std::unique_ptr<CameraSession> openForStills(const Context& context, const StillOptions& options);

} // namespace doccam::host
