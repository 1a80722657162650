// The options shared by several commands.
#pragma once

#include "camera/camera_session.h"
#include "camera/page_settings.h"
#include "host/context.h"
#include "pages/recipe.h"

#include <CLI/App.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

// Returns what is wrong with a value; empty for a valid one.
using OptionCheck = std::function<std::string(const std::string&)>;

OptionCheck oneOf(std::vector<std::string> choices);
OptionCheck between(int least, int most);

struct StillOptions {
    std::optional<Size> size;
    std::optional<Format> format;
    PageSettings page;
};

// --size and --format.
void addCaptureOptions(CLI::App& command, StillOptions& options);

// --rotate, --colour, --clean-edges, --clean-background, --quality.
void addPageOptions(CLI::App& command, PageSettings& page);

// --colour, or --color; "gray" is grey.
void addColourOption(CLI::App& command, const std::function<void(Colour)>& store);

// --look.
void addLookOption(CLI::App& command, const std::function<void(Look)>& store);

// --crop, alone for usual, --crop=sheet and --crop=rectangle; --crop=false for none. givenAlone is
// set to whether it was given alone.
void addCropOption(CLI::App& command, Crop& crop, Crop usual, const std::string& help,
                   bool* givenAlone = nullptr);

// Opens the chosen camera according to the options and applies the page settings.
std::unique_ptr<CameraSession> openForStills(const Context& context, const StillOptions& options);

} // namespace doccam::host
