#include "serve/live/page_saving.h"

#include "pages/rendering.h"
#include "pictures/writing.h"
#include "scan/page_source.h"
#include "serve/live/refusals.h"

namespace doccam::serve {
namespace {

// A JPEG comes as the camera sent it, before the library has turned it.
int missingTurns(const host::PageDraft& draft, int quarterTurns) {
    return host::extensionOf(draft.frame) == std::string(".jpg") ? quarterTurns : 0;
}

} // namespace

void savePage(host::CameraSession& session, const Settings& settings, const std::string& path) {
    const host::PageWay way{
        .whole = !settings.crop,
        .recipe = {.look = settings.look, .colour = settings.colour, .quality = settings.quality}};
    host::PageDraft draft = host::draftPage(session, way, path);
    if (settings.crop && !draft.cropped) {
        throw NoSheet();
    }
    draft.recipe.turn = missingTurns(draft, settings.quarterTurns);
    const host::Page page = host::renderPage(host::decoded(draft.frame), draft.recipe);
    if (!host::writePicture(path, host::greyOrColour(*page), settings.quality)) {
        throw Refused("the page could not be written; is the disk full?");
    }
}

void saveStill(host::CameraSession& session, const Settings& settings, const std::string& path) {
    if (settings.crop && !session.findSheet()) {
        throw NoSheet();
    }
    session.still(path, settings.crop);
}

} // namespace doccam::serve
