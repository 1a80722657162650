// doccam spool: the documents that are not saved yet, or were saved lately.
#include "pages/spool/spool.h"

#include "commands/commands.h"
#include "commands/documents/document_options.h"
#include "commands/options.h"
#include "documents/document_saving.h"
#include "documents/scan_document.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "host/progress.h"
#include "pages/sheet_json.h"
#include "pictures/pdf_name.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

struct SpoolOptions {
    std::string action;
    std::vector<std::string> documents;
    std::string target;
    bool force = false;
    bool all = false;
    DocumentOptions document;
    std::set<std::string> given; // of the document's options
};

std::string textOfTime(std::int64_t seconds) {
    const std::time_t time = seconds;
    std::tm utc{};
    gmtime_r(&time, &utc);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text.data();
}

bool isServes(const SpoolEntry& entry) {
    return entry.manifest->plan.taker == PageTaker::kServe;
}

Json asJson(const SpoolEntry& entry) {
    Json row{{"document", entry.name},  {"folder", entry.folder.string()},
             {"bytes", entry.bytes},    {"inUse", entry.inUse},
             {"pages", nullptr},        {"taker", nullptr},
             {"target", nullptr},       {"saved", nullptr},
             {"damaged", entry.damaged}};
    if (entry.manifest) {
        row["pages"] = entry.manifest->pages.size();
        row["taker"] = isServes(entry) ? "serve" : "scan";
        row["target"] = entry.manifest->plan.target;
        row["saved"] =
            entry.manifest->saved != 0 ? Json(textOfTime(entry.manifest->saved)) : Json();
    }
    return row;
}

std::string asText(const SpoolEntry& entry) {
    std::string line = entry.name + "  ";
    if (!entry.manifest) {
        return line + "its list of pages is damaged; its frames are in " + entry.folder.string();
    }
    const std::size_t pages = entry.manifest->pages.size();
    line += std::to_string(pages) + (pages == 1 ? " page  " : " pages  ") +
            std::to_string(entry.bytes) + " bytes  " +
            (entry.inUse                  ? "in use"
             : entry.manifest->saved == 0 ? "not saved"
                                          : "saved " + textOfTime(entry.manifest->saved)) +
            "  " + (isServes(entry) ? "doccam serve" : entry.manifest->plan.target);
    for (const std::string& frame : entry.damaged) {
        line += "\n  damaged: " + frame;
    }
    return line;
}

int list(const Context& context, const Spool& spool, const SpoolOptions& /*options*/) {
    Result result(context.options.json, Json::array());
    for (const SpoolEntry& entry : spool.list()) {
        result.add(asJson(entry), asText(entry));
    }
    return kDone;
}

SpoolEntry entryOf(const Spool& spool, const SpoolOptions& options) {
    const std::string name =
        options.documents.empty() ? spool.newestUnsaved() : options.documents.front();
    for (const SpoolEntry& entry : spool.list()) {
        if (entry.name == name) {
            return entry;
        }
    }
    throw Failure(kNothingFound, name.empty() ? "The spool has no document that is not saved."
                                              : "The spool has no document " + name +
                                                    "; doccam spool list shows which there are.");
}

Json asJson(const SpoolEntry& entry, const KeptPage& page) {
    const auto isDamaged = std::count(entry.damaged.begin(), entry.damaged.end(), page.frame) > 0;
    Json row{{"frame", (entry.folder / page.frame).string()}, {"sound", !isDamaged}};
    row.update(asJson(
        page.recipe.corners
            ? std::optional(FoundSheet{*page.recipe.corners, page.origin.confidence.value_or(0)})
            : std::nullopt));
    row["finished"] = page.origin.finished;
    row["rotate"] = page.recipe.turn * 90;
    row["look"] = page.recipe.look == Look::kPaper ? "paper" : "photo";
    row["colour"] = kColourNames.at(static_cast<std::size_t>(page.recipe.colour));
    row["quality"] = page.recipe.quality;
    return row;
}

int show(const Context& context, const Spool& spool, const SpoolOptions& options) {
    const SpoolEntry entry = entryOf(spool, options);
    if (!entry.manifest) {
        throw Failure(kFileFailed, "The document " + entry.name +
                                       " has a damaged list of pages; its frames are in " +
                                       entry.folder.string() + ".");
    }
    Result result(context.options.json, Json::array());
    for (const KeptPage& page : entry.manifest->pages) {
        Json row{{"page", result.value.size() + 1}};
        row.update(asJson(entry, page));
        result.add(row, std::to_string(result.value.size() + 1) + "  " +
                            (entry.folder / page.frame).string() +
                            (row["sound"].get<bool>() ? "" : "  damaged"));
    }
    return kDone;
}

int resume(const Context& context, const Spool& spool, const SpoolOptions& options) {
    const auto document =
        openSpooled(spool, options.documents.empty() ? "" : options.documents.front());
    const std::string target = targetFor(*document, options.target);
    if (!isPdfName(target)) {
        throw Failure(kUsage, "The name " + target + " is no PDF's; let it end in .pdf.");
    }
    if (document->pages().empty()) {
        throw Failure(kNothingFound, "The document " + document->name() + " has no pages.");
    }
    OutputFile file(target, options.force);
    DocumentOptions said = options.document;
    adopt(said, document->plan().document, options.given);
    PageRenderer renderer(*document, folderIn(file, "pages"));
    const Progress progress(context.options, "saving page", document->pages().size());
    const SavedDocument saved = saveDocument(*document, renderer, file, said, *context.interrupt,
                                             [&](std::size_t page) { progress.show(page); });
    if (saved.pages.empty()) {
        throw Failure(kFileFailed, saved.damaged.front());
    }
    noteSaved(*document, saved, std::filesystem::absolute(target).string());
    return reportSaved(saved, target, context.options.json);
}

// Without names, what was saved; with --all, all that is not in use.
int clear(const Context& context, const Spool& spool, const SpoolOptions& options) {
    Result result(context.options.json, Json::array());
    std::vector<std::string> names = options.documents;
    for (const SpoolEntry& entry : spool.list()) {
        const bool isSaved = entry.manifest && entry.manifest->saved != 0;
        if (options.documents.empty() && !entry.inUse && (options.all || isSaved)) {
            names.push_back(entry.name);
        }
    }
    for (const std::string& name : names) {
        spool.clear(name);
        result.add(Json(name), name + "  cleared");
    }
    return kDone;
}

using Action = int (*)(const Context&, const Spool&, const SpoolOptions&);
const std::map<std::string, Action> kActions{
    {"list", list}, {"show", show}, {"resume", resume}, {"clear", clear}};

void refuseContradictions(const SpoolOptions& options) {
    if (options.all && (options.action != "clear" || !options.documents.empty())) {
        throw Failure(kUsage, "--all goes with clear alone; leave it out.");
    }
    if ((options.force || !options.target.empty() || !options.given.empty()) &&
        options.action != "resume") {
        throw Failure(kUsage, "--as, --force and a document's options go with resume alone; leave "
                              "them out.");
    }
    if (options.documents.size() > (options.action == "list"    ? 0U
                                    : options.action == "clear" ? options.documents.size()
                                                                : 1U)) {
        throw Failure(kUsage, "doccam spool " + options.action +
                                  " takes fewer documents; doccam spool --help shows how many.");
    }
}

} // namespace

void addSpoolCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<SpoolOptions>();
    CLI::App* command =
        app.add_subcommand("spool", "List, save or clear scanned pages that are kept");
    command
        ->add_option("ACTION", options->action,
                     "list; show: a document's frames; resume: save a document; clear: remove "
                     "documents")
        ->required()
        ->check(oneOf({"list", "show", "resume", "clear"}))
        ->type_name("");
    command
        ->add_option("DOCUMENT", options->documents,
                     "As list names them; show and resume take the newest one not saved unless "
                     "given, clear those that are saved")
        ->type_name("");
    command->add_option("--as", options->target, "Save as this PDF, not as the one scanned for")
        ->type_name("OUT.pdf");
    command->add_flag("--force", options->force, "Replace a file that exists");
    command->add_flag("--all", options->all, "Clear also what is not saved");
    command->footer("Examples:\n"
                    "  doccam spool list\n"
                    "  doccam spool resume --as letter.pdf\n"
                    "  doccam spool clear --all");
    addDocumentOptions(*command, options->document);
    command->callback([&context, command, options] {
        options->given = givenDocumentOptions(*command);
        context.run = [&context, options] {
            refuseContradictions(*options);
            return kActions.at(options->action)(context, Spool(), *options);
        };
    });
}

} // namespace doccam::host
