// The outline of what is large and bright in a picture.
#pragma once

#include "docimage/clean/page_grey.h"
#include "docimage/pixels/work_plane.h"

namespace doccam {

// 255 along the outlines, three pixels wide, and 0 elsewhere, in the plane's own memory. The bright
// regions of the grey picture are taken from the lowest upward: from the first one that covers more
// than 30000 pixels on, all are outlined, small ones too. Regions end one pixel before the
// picture's edge.
WorkPlane sheetOutline(PageGrey grey);

} // namespace doccam
