#include "serve/tray/document_maker.h"

#include "documents/writer/document_module.h"

#include <filesystem>
#include <memory>

namespace doccam::serve {

DocumentMaker::DocumentMaker(PageStore& pages)
  : pages_(pages)
  , queue_(kMaximumWaiting, "several PDFs are being made already; try again in some seconds")
  , thread_(ownedThread([this] { queue_.serve(); })) {}

DocumentMaker::~DocumentMaker() {
    close();
}

MadeDocument DocumentMaker::make() {
    return queue_.order([this] { return write(); });
}

MadeDocument DocumentMaker::write() {
    MadeDocument made{(pages_.folder() / ("pages-" + std::to_string(++last_) + ".pdf")).string(),
                      pages_.pages()};
    // They stay while they are held, also when a page is changed or deleted.
    std::vector<std::shared_ptr<const host::PageFile>> pictures;
    for (const Page& page : made.pages) {
        try {
            pictures.push_back(pages_.pictures().picture(page.kept));
        } catch (const host::DamagedFrame&) {
            throw TrayError("page " + std::to_string(pictures.size() + 1) +
                            " is damaged on the disk; delete it to get the others");
        }
    }
    if (pictures.empty()) {
        throw TrayError("there is no page yet; take one first");
    }
    host::PdfPlan plan;
    for (const auto& picture : pictures) {
        plan.pages.push_back({.file = picture->path,
                              .size = picture->sized.size,
                              .picture = picture->sized.picture});
    }
    try {
        host::documentModule().write(plan, made.path);
    } catch (const ModuleError& error) {
        throw TrayError(error.what());
    } catch (const host::DocumentError&) {
        std::filesystem::remove(made.path);
        throw TrayError("the PDF could not be made; see that the disk is not full");
    }
    return made;
}

} // namespace doccam::serve
