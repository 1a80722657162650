#include "documents/document_making.h"

#include "documents/layers/layers.h"
#include "documents/writer/document_module.h"
#include "host/failure.h"
#include "host/modules/with_modules.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace doccam::host {
namespace {

SizedPage sizeOf(const InputPage& page, const PaperOptions& options) {
    if (page.isPdf()) {
        return {.size = *page.size, .from = DpiSource::kFile, .picture = *page.size};
    }
    return page.sized ? *page.sized
                      : sizePage(page.pixels, {.options = options,
                                               .inFile = credibleSize(page.pixels, page.inFile)});
}

bool asksForMore(const DocumentOptions& options) {
    return options.compact || options.text.upright || !options.text.languages.empty() ||
           !(options.paper == PaperOptions());
}

// A command that finishes after the first Ctrl-C goes on.
void goOn(const Interrupt& interrupt) {
    if (interrupt.mustEnd()) {
        throw Interruption();
    }
}

// Gives pages their words, and turns them upright.
class PageReading {
  public:
    PageReading(const OutputFile& file, std::vector<InputPage>& pages, MadeDocument& made)
      : file_(file)
      , pages_(pages)
      , made_(made) {}

    void read(const TextOptions& options, const Interrupt& interrupt) {
        std::vector<PageForText> asked;
        for (std::size_t i = 0; i < pages_.size(); ++i) {
            if (!pages_[i].isPdf()) {
                asked.push_back(
                    {[&page = pages_[i]] { return pictureOf(page); }, made_.pages[i].dpi, i + 1});
            }
        }
        const RecognizedPages found = recognize(asked, options, folder(), interrupt);
        made_.complaints.insert(made_.complaints.end(), found.complaints.begin(),
                                found.complaints.end());
        take(found.pages);
    }

  private:
    std::string folder() const {
        std::string path = file_.part("words");
        std::filesystem::create_directory(path);
        return path;
    }

    void take(const std::vector<PageText>& texts) {
        auto text = texts.begin();
        for (std::size_t i = 0; i < pages_.size() && text != texts.end(); ++i) {
            if (pages_[i].isPdf()) {
                continue;
            }
            pages_[i].planned.text = text->pdf;
            pages_[i].planned.quarterTurns = text->quarterTurns;
            SizedPage& sized = made_.pages[i];
            sized.size = turned(sized.size, text->quarterTurns);
            sized.picture = turned(sized.picture, text->quarterTurns);
            ++text;
        }
    }

    const OutputFile& file_;
    std::vector<InputPage>& pages_;
    MadeDocument& made_;
};

void write(const PdfPlan& plan, const OutputFile& file, const std::string& path) {
    const DocumentModule& module = *withModules([] { return &documentModule(); });
    try {
        module.write(plan, path);
    } catch (const DocumentError& error) {
        throw Failure(kFileFailed, file.target().string() + " " + error.what() + ".");
    }
}

} // namespace

std::string draftOf(const OutputFile& file) {
    return file.part("draft.pdf");
}

MadeDocument makeDocument(const OutputFile& file, std::vector<InputPage> pages,
                          const DocumentOptions& options, const std::string& base,
                          const Interrupt& interrupt) {
    MadeDocument made;
    for (const InputPage& page : pages) {
        made.pages.push_back(sizeOf(page, options.paper));
    }
    if (!options.text.languages.empty() || options.text.upright) {
        PageReading(file, pages, made).read(options.text, interrupt);
    }
    if (asksForMore(options) && std::any_of(pages.begin(), pages.end(),
                                            [](const InputPage& page) { return page.isPdf(); })) {
        made.complaints.emplace_back(
            "The pages of PDFs were taken as they are; their size, words and "
            "layers cannot be made anew.");
    }
    PdfPlan plan{.base = base,
                 .title = options.title,
                 .author = options.author,
                 .language = options.language,
                 .date = options.date};
    for (std::size_t i = 0; i < pages.size(); ++i) {
        PlannedPage planned = pages[i].planned;
        planned.size = made.pages[i].size;
        planned.picture = made.pages[i].picture;
        if (options.compact && !pages[i].isPdf()) {
            planned.layers = [&page = pages[i], dpi = made.pages[i].dpi, &interrupt] {
                goOn(interrupt);
                return splitLayers(uprightPictureOf(page), dpi);
            };
        }
        plan.pages.push_back(std::move(planned));
    }
    write(plan, file, draftOf(file));
    return made;
}

std::vector<std::string> publishDocument(OutputFile& file, std::vector<InputPage> pages,
                                         const DocumentOptions& options,
                                         const Interrupt& interrupt) {
    const MadeDocument made = makeDocument(file, std::move(pages), options, "", interrupt);
    file.publish(draftOf(file));
    return made.complaints;
}

} // namespace doccam::host
