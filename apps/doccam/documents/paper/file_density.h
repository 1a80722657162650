// The density that a picture file carries.
#pragma once

#include "documents/paper/page_size.h"
#include "pictures/headers/file_bytes.h"

#include <optional>

namespace doccam::host {

// In the JFIF header of a JPEG, or more exactly in its Exif data if these round to the same, as
// cameras write there what does not depend on the distance; in the pHYs chunk of a PNG; in the tags
// of a TIFF's picture number part, from 0. None for other types, and if there is no density in
// units of length. It may be any number.
std::optional<Density> readDensity(FileBytes& file, int part = 0);

} // namespace doccam::host
