// doccam scan: sheet after sheet becomes the pages of one PDF.
#include "commands/commands.h"
#include "commands/options.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "pictures/pdf_file.h"
#include "pictures/written_file.h"
#include "scan/scanning.h"

#include <memory>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

constexpr int kMaximumPages = 999;
constexpr int kSheetFrames = 60; // frames that a virtual sheet lies still

struct ScanOptions {
    StillOptions still;
    ScanPlan plan;
    std::string target;
    bool force = false;
};

Json asJson(const std::vector<ScannedPage>& pages) {
    Json array = Json::array();
    for (const ScannedPage& page : pages) {
        array.push_back({{"page", array.size() + 1},
                         {"width", page.width},
                         {"height", page.height},
                         {"cropped", page.cropped}});
    }
    return array;
}

std::vector<ScannedPage> takePages(const Context& context, const ScanOptions& options,
                                   OutputFile& file) {
    const auto session = openForStills(context, options.still);
    PageStack stack(*session, file);
    scanPages(*session, stack, options.plan);
    return stack.pages();
}

void report(const Context& context, const WrittenFile& written,
            const std::vector<ScannedPage>& pages) {
    Result result(context.options.json, asJson(written));
    result.value["pages"] = asJson(pages);
    result.tell(asText(written) + "  " + std::to_string(pages.size()) +
                (pages.size() == 1 ? " page" : " pages"));
}

int scan(const Context& context, const ScanOptions& options) {
    if (!isPdfName(options.target)) {
        throw Failure(kUsage, "The name " + options.target + " is no PDF's; let it end in .pdf.");
    }
    OutputFile file(options.target, options.force);
    const std::vector<ScannedPage> pages = takePages(context, options, file);
    if (pages.empty()) {
        throw Failure(kNothingFound, "No page was taken, so " + options.target +
                                         " was not written; put a sheet before the camera.");
    }
    std::vector<std::string> images;
    images.reserve(pages.size());
    for (const ScannedPage& page : pages) {
        images.push_back(page.path);
    }
    publishPdf(file, images, *context.interrupt);
    report(context, describeFile(options.target), pages);
    return kDone;
}

void addOptions(CLI::App& command, ScanOptions& options) {
    command.add_option("OUT", options.target, "The PDF to write")->required()->type_name("");
    command.add_flag("--auto", options.plan.automatic,
                     "Take a page whenever a new sheet lies still; Enter ends");
    command.add_option("--pages", options.plan.pages, "End after so many pages")
        ->check(between(1, kMaximumPages))
        ->type_name("N");
    command.add_flag("--whole-frame", options.plan.whole,
                     "Take the whole frame instead of cutting out the sheet");
    addCaptureOptions(command, options.still);
    addPageOptions(command, options.still.page);
    command.add_flag("--force", options.force, "Replace a file that exists");
    command.footer("Enter takes a page, q and Enter ends. Ctrl-C leaves no file.\n"
                   "With --auto the virtual cameras change their sheets by themselves.\n\n"
                   "Examples:\n"
                   "  doccam scan letter.pdf\n"
                   "  doccam scan --auto --pages 12 --colour grey --clean-edges book.pdf\n"
                   "  doccam --virtual scan demo.pdf --auto --pages 3");
}

} // namespace

void addScanCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<ScanOptions>();
    CLI::App* command = app.add_subcommand("scan", "Make a PDF of sheet after sheet");
    addOptions(*command, *options);
    command->callback([&context, options] {
        context.patience.reset();
        context.virtualCamera.sheetFrames = options->plan.automatic ? kSheetFrames : 0;
        context.run = [&context, options] { return scan(context, *options); };
    });
}

} // namespace doccam::host
