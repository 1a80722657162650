#include "documents/document_saving.h"

#include "documents/document_making.h"
#include "host/failure.h"
#include "pages/sheet_json.h"
#include "pictures/written_file.h"

#include <exception>
#include <memory>
#include <utility>

namespace doccam::host {
namespace {

std::optional<FoundSheet> sheetOf(const KeptPage& page) {
    return page.recipe.corners
               ? std::optional(FoundSheet{*page.recipe.corners, page.origin.confidence.value_or(0)})
               : std::nullopt;
}

} // namespace

SavedDocument saveDocument(const PageDocument& document, PageRenderer& renderer, OutputFile& file,
                           const DocumentOptions& options, const Interrupt& interrupt,
                           const PageNote& note) {
    const std::vector<KeptPage> pages = document.pages();
    for (const KeptPage& page : pages) {
        renderer.begin(page);
    }
    SavedDocument saved;
    std::vector<std::shared_ptr<const PageFile>> files; // until they are in the document
    std::vector<InputPage> inputs;
    for (const KeptPage& page : pages) {
        if (interrupt.mustEnd()) {
            throw Interruption();
        }
        if (note) {
            note(saved.pages.size() + saved.damaged.size() + 1);
        }
        try {
            const auto made = renderer.finish(page);
            files.push_back(made);
            inputs.push_back(madePage(made->path, made->sized));
            saved.pages.push_back({page, made->size, made->sized});
        } catch (const DamagedFrame& damage) {
            saved.damaged.emplace_back(damage.what());
        }
    }
    if (!inputs.empty()) {
        saved.complaints = publishDocument(file, std::move(inputs), options, interrupt);
    }
    if (!saved.pages.empty() && !saved.damaged.empty() && !document.name().empty()) {
        saved.complaints.push_back("The document stays in the spool: doccam spool resume --force " +
                                   document.name() +
                                   " saves it again once the frames are back, doccam spool clear " +
                                   document.name() + " removes it.");
    }
    return saved;
}

// The document is written: that the spool does not know is no failure.
void noteSaved(PageDocument& document, const SavedDocument& saved, const std::string& target) {
    if (!saved.damaged.empty()) {
        return;
    }
    try {
        document.markSaved(target);
    } catch (const Failure&) {
    }
}

Json asJson(const SavedDocument& saved) {
    Json array = Json::array();
    for (const SavedPage& one : saved.pages) {
        Json row{{"page", array.size() + 1},
                 {"width", one.size.width},
                 {"height", one.size.height},
                 {"cropped", one.page.recipe.corners.has_value() || one.page.origin.cropped}};
        row.update(asJson(sheetOf(one.page)));
        row.update(asJson(one.sized));
        array.push_back(std::move(row));
    }
    return array;
}

int reportSaved(const SavedDocument& saved, const std::string& path, bool json) {
    const WrittenFile written = describeFile(path);
    {
        Result result(json, asJson(written));
        result.value["pages"] = asJson(saved);
        result.tell(asText(written) + "  " + std::to_string(saved.pages.size()) +
                    (saved.pages.size() == 1 ? " page" : " pages"));
    }
    for (const auto* const sentences : {&saved.damaged, &saved.complaints}) {
        for (const std::string& sentence : *sentences) {
            complain(sentence);
        }
    }
    return saved.damaged.empty() && saved.complaints.empty() ? kDone : kFileFailed;
}

} // namespace doccam::host
