// doccam scan: sheet after sheet becomes the pages of one PDF.
#include "camera/calibrations.h"
#include "commands/commands.h"
#include "commands/documents/document_options.h"
#include "commands/options.h"
#include "commands/paper/paper_options.h"
#include "documents/document_saving.h"
#include "documents/scan_document.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "host/progress.h"
#include "pictures/pdf_name.h"
#include "scan/scan_options.h"
#include "scan/scanning.h"
#include "streams/output_stream.h"
#include "streams/picture_inputs.h"

#include <functional>
#include <memory>
#include <string>

namespace doccam::host {
namespace {

constexpr int kMaximumPages = 999;
constexpr int kSheetFrames = 60; // frames that a virtual sheet lies still

struct ScanArguments {
    ScanOptions scan;
    StillOptions still; // its page settings are those of the scan if the library makes the pages
};

// Returns whether it ended by Ctrl-C, which saves what there is.
bool takePages(const Context& context, const ScanArguments& arguments, ScanDocument& document) {
    const ScanOptions& options = arguments.scan;
    try {
        const auto session = openForStills(context, arguments.still);
        PageWay way = options.way();
        way.desks = desksOf(session->camera());
        PageStack stack(*session, document.pages(), document.renderer(), way,
                        document.file().part(way.recipe.colour == Colour::kBlackAndWhite
                                                 ? "still.png"
                                                 : "still.jpg"),
                        [&](std::size_t /*pages*/) {
                            context.interrupt->setLastWords(document.keptSentence());
                        });
        scanPages(*session, stack, options.plan);
        return false;
    } catch (const HangUp&) {
        throw;
    } catch (const Interruption&) {
        if (context.interrupt->mustEnd()) {
            throw;
        }
        return true;
    }
}

// Brings the file that is made to where the user wants it; throws Failure.
using Delivery = std::function<void()>;

int save(const Context& context, const DocumentOptions& pdf, ScanDocument& document,
         const Delivery& deliver) {
    const Progress progress(context.options, "saving page", document.pages().pages().size());
    const SavedDocument saved =
        saveDocument(document.pages(), document.renderer(), document.file(), pdf,
                     *context.interrupt, [&](std::size_t page) { progress.show(page); });
    if (saved.pages.empty()) {
        throw Failure(kFileFailed, saved.damaged.front());
    }
    deliver();
    noteSaved(document.pages(), saved);
    context.interrupt->setLastWords("");
    return reportSaved(saved, document.file().target().string(), context.options.json);
}

int scanAndSave(const Context& context, const ScanArguments& arguments, ScanDocument& document,
                const Delivery& deliver) {
    const bool interrupted = takePages(context, arguments, document);
    if (document.pages().pages().empty()) {
        if (interrupted) {
            throw Interruption();
        }
        throw Failure(kNothingFound, "No page was taken, so " + document.file().target().string() +
                                         " was not written; put a sheet before the camera.");
    }
    const int code = save(context, arguments.scan.document, document, deliver);
    return interrupted ? kInterrupted : code;
}

// What a failure leaves in the spool is part of its sentence.
int scan(const Context& context, ScanArguments arguments, const Delivery& deliver) {
    refuseContradictions(arguments.scan);
    ScanDocument document(arguments.scan);
    arguments.scan.adopt(document.pages().plan());
    arguments.still.page = arguments.scan.byEngine() ? PageSettings() : arguments.scan.page;
    try {
        return scanAndSave(context, arguments, document, deliver);
    } catch (const Interruption&) {
        context.interrupt->setLastWords("");
        if (const std::string kept = document.keptSentence(); !kept.empty()) {
            complain(kept);
        }
        throw;
    } catch (const Failure& failure) {
        const std::string kept = document.keptSentence();
        throw Failure(failure.code(), failure.what() + (kept.empty() ? "" : " " + kept));
    }
}

int scanToTarget(const Context& context, ScanArguments arguments) {
    if (!isStandardStream(arguments.scan.target)) {
        return scan(context, std::move(arguments), [] {});
    }
    const OutputStream stream(context.options, ".pdf");
    arguments.scan.target = stream.path();
    arguments.scan.targetPasses = true;
    return stream.named([&] { return scan(context, arguments, [&] { stream.send(); }); });
}

void addOptions(CLI::App& command, ScanArguments& arguments) {
    ScanOptions& options = arguments.scan;
    command.add_option("OUT", options.target, "The PDF to write; - for standard output")
        ->type_name("");
    command.add_flag("--auto", options.plan.automatic,
                     "Take a page whenever a new sheet lies still; Enter ends");
    command.add_option("--pages", options.plan.pages, "End after so many pages")
        ->check(between(1, kMaximumPages))
        ->type_name("N");
    addCropOption(command, options.crop, Crop::kSheet,
                  "Take the sheet, as without it; --crop=rectangle takes it for a rectangle");
    command.add_flag("--whole-frame", options.plan.whole,
                     "Take the whole frame instead of cutting out the sheet");
    addLookOption(command, [&options](Look look) { options.look = look; });
    addCaptureOptions(command, arguments.still);
    addPageOptions(command, options.page);
    addPaperOptions(command, options.paper);
    addDocumentOptions(command, options.document);
    command.add_flag("--resume", options.resume,
                     "Go on with the newest document that was not saved, taking further pages in "
                     "the same way but for the options given");
    command.add_flag("--no-spool", options.noSpool, "Keep nothing that is not saved");
    command.add_flag("--force", options.force, "Replace a file that exists");
    command.footer(
        "Enter takes a page, r takes the last again, d drops it, q saves; each with Enter.\n"
        "Ctrl-C saves what there is; a second one, or a crash, leaves it in the spool,\n"
        "where doccam scan --resume and doccam spool find it.\n"
        "With --auto the virtual cameras change their sheets by themselves.\n\n"
        "Examples:\n"
        "  doccam scan letter.pdf\n"
        "  doccam scan --auto --pages 12 --colour grey book.pdf\n"
        "  doccam scan --resume\n"
        "  doccam --virtual scan demo.pdf --auto --pages 3");
}

} // namespace

void addScanCommand(CLI::App& app, Context& context) {
    const auto arguments = std::make_shared<ScanArguments>();
    CLI::App* command = app.add_subcommand("scan", "Make a PDF of sheet after sheet");
    addOptions(*command, *arguments);
    command->callback([&context, command, arguments] {
        ScanOptions& options = arguments->scan;
        if (options.target.empty() && !options.resume) {
            throw CLI::RequiredError("OUT");
        }
        options.given = givenDocumentOptions(*command);
        for (const char* name : {"--rotate", "--colour", "--quality"}) {
            if (command->count(name) > 0) {
                options.given.insert(name);
            }
        }
        context.ctrlC = Interrupt::CtrlC::kFinishes;
        context.settle = [&context, &options, said = options] {
            options.prefer(said);
            context.virtualCamera.sheetFrames = options.plan.automatic ? kSheetFrames : 0;
        };
        context.run = [&context, arguments] { return scanToTarget(context, *arguments); };
    });
}

} // namespace doccam::host
