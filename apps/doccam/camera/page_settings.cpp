#include "camera/page_settings.h"

#include <doccam/doccam.h>

namespace doccam::host {

void apply(const PageSettings& settings) {
    SetRotate(settings.quarterTurns);
    SetColorMode(static_cast<int>(settings.colour));
    SetDelBlackedge(settings.cleanEdges ? 1 : 0);
    SetDelBackColor(settings.cleanBackground ? 1 : 0);
    SetJpgQuality(settings.quality);
}

void cropToSheet(bool crop) {
    SetCutType(crop ? 1 : 0);
}

} // namespace doccam::host
