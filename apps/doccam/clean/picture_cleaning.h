// Cleaning picture files by the steps of stills.
#pragma once

#include "clean/clean_options.h"
#include "host/context.h"
#include "pictures/written_file.h"

#include <optional>

namespace doccam::host {

// Whitens file's margins and paper in a process apart and writes its target, for --crop=rectangle
// cropped; none if that finds no sheet. Throws Failure.
std::optional<WrittenFile> cleanPicture(const Context& context, const std::string& file,
                                        const CleanOptions& options);

} // namespace doccam::host
