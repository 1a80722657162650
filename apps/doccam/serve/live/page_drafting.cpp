#include "serve/live/page_drafting.h"

#include "camera/calibrations.h"
#include "serve/live/refusals.h"

#include <string_view>

namespace doccam::serve {
namespace {

// A JPEG comes as the camera sent it, before the library has turned it; a still has been turned.
int missingTurns(const host::PageDraft& draft, int quarterTurns) {
    const bool isFromCamera =
        !draft.origin.finished && host::extensionOf(draft.frame) == std::string_view(".jpg");
    return isFromCamera ? quarterTurns : 0;
}

} // namespace

host::PageDraft draftPage(host::CameraSession& session, const Settings& settings,
                          const std::string& work) {
    const bool byEngine = settings.byEngine();
    // Changed later, a still is not to be whitened again.
    const host::PageWay way{.byEngine = byEngine,
                            .whole = !settings.crop,
                            .recipe = {.look = byEngine ? settings.look : host::Look::kPhoto,
                                       .colour = settings.colour,
                                       .quality = settings.quality},
                            .desks = host::desksOf(session.camera())};
    host::PageDraft draft = host::draftPage(session, way, work);
    if (settings.crop && !draft.cropped) {
        throw NoSheet();
    }
    draft.recipe.turn = missingTurns(draft, settings.quarterTurns);
    return draft;
}

} // namespace doccam::serve
