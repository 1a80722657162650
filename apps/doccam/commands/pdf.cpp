// doccam pdf: image files as the pages of one PDF.
#include "commands/commands.h"
#include "host/apart.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "host/progress.h"
#include "pictures/pdf_file.h"
#include "pictures/picture_limits.h"
#include "pictures/written_file.h"
#include "streams/output_stream.h"
#include "streams/picture_inputs.h"

#include <memory>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

struct PdfOptions {
    std::string target;
    std::vector<std::string> images;
    bool force = false;
};

// In a separate process, as each page's pixels are held until the PDF is written.
std::string draftApart(const Context& context, const OutputFile& file,
                       const std::vector<std::string>& images) {
    const PictureLimits limits = pictureLimits();
    const Bounds bounds{.bytes = limits.workingBytes() * images.size(),
                        .processor = limits.working * images.size()};
    const Progress progress(context.options, "page", images.size());
    const Apart made = runApart(*context.interrupt, bounds, [&](const Report& report) {
        report(draftPdf(file, images, *context.interrupt,
                        [&](std::size_t page) { progress.show(page); }));
    });
    if (made.end != ApartEnd::kDone || made.reports.empty()) {
        throw Failure(kUsage, "The pictures for " + file.target().string() +
                                  " cannot be put into a PDF; look whether they are sound.");
    }
    return made.reports.front();
}

int pdf(const Context& context, const PdfOptions& options) {
    if (isStandardStream(options.target)) {
        const OutputStream stream(context.options, ".pdf");
        PdfOptions sent = options;
        sent.target = stream.path();
        const int code = stream.named([&] { return pdf(context, sent); });
        stream.send();
        return code;
    }
    if (!isPdfName(options.target)) {
        throw Failure(kUsage, "The name " + options.target + " is no PDF's; let it end in .pdf.");
    }
    OutputFile file(options.target, options.force);
    const PictureInputs inputs(options.images, *context.interrupt);
    file.publish(inputs.named([&] { return draftApart(context, file, inputs.paths()); }));
    const WrittenFile written = describeFile(file.target().string());
    Result result(context.options.json, asJson(written));
    result.value["pages"] = options.images.size();
    result.tell(asText(written));
    return kDone;
}

} // namespace

void addPdfCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<PdfOptions>();
    CLI::App* command = app.add_subcommand("pdf", "Make one PDF of image files");
    command->add_option("OUT", options->target, "The PDF to write; - for standard output")
        ->required()
        ->type_name("");
    command->add_option("IMAGE", options->images, "Its pages, in order; - for standard input")
        ->required()
        ->type_name("");
    command->add_flag("--force", options->force, "Replace a file that exists");
    command->footer("Examples:\n"
                    "  doccam pdf letter.pdf page1.jpg page2.jpg\n"
                    "  doccam pdf --force all.pdf *.png\n"
                    "  scanimage | doccam pdf - - >page.pdf");
    command->callback([&context, options] {
        context.run = [&context, options] { return pdf(context, *options); };
    });
}

} // namespace doccam::host
