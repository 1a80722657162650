// doccam pdf: pictures and PDFs as the pages of one PDF.
#include "commands/commands.h"
#include "commands/documents/document_options.h"
#include "commands/paper/paper_options.h"
#include "documents/document_making.h"
#include "documents/document_report.h"
#include "host/apart.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "host/progress.h"
#include "pictures/pdf_name.h"
#include "pictures/picture_limits.h"
#include "pictures/written_file.h"
#include "streams/output_stream.h"
#include "streams/picture_inputs.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

struct PdfOptions {
    std::string target;
    std::vector<std::string> files;
    DocumentOptions document;
    bool append = false;
    bool skipBad = false;
    bool force = false;

    // The PDF to which the pages are appended; none if empty.
    std::string base() const {
        return append && std::filesystem::exists(target) ? target : std::string();
    }
};

class PdfMaking {
  public:
    PdfMaking(const Context& context, const PdfOptions& options, const PictureInputs& inputs)
      : context_(context)
      , options_(options)
      , inputs_(inputs) {}

    MadeDocument make(const OutputFile& file) {
        std::vector<InputPage> pages;
        std::vector<std::string> complaints;
        const Progress progress(context_.options, "page", inputs_.paths().size());
        for (const std::string& path : inputs_.paths()) {
            context_.interrupt->check();
            progress.show(++number_);
            try {
                const std::vector<InputPage> some = inputPages(path);
                pages.insert(pages.end(), some.begin(), some.end());
            } catch (const Interruption&) {
                throw;
            } catch (const Failure& failure) {
                if (!options_.skipBad) {
                    throw;
                }
                complaints.emplace_back(failure.what());
            }
        }
        if (pages.empty()) {
            throw Failure(kUsage, complaints.empty() ? "There are no pages." : complaints.front());
        }
        MadeDocument made = makeDocument(file, std::move(pages), options_.document, options_.base(),
                                         *context_.interrupt);
        made.complaints.insert(made.complaints.begin(), complaints.begin(), complaints.end());
        return made;
    }

  private:
    const Context& context_;
    const PdfOptions& options_;
    const PictureInputs& inputs_;
    std::size_t number_ = 0;
};

struct PdfReport {
    Json sizes;
    std::string text;
    std::vector<std::string> complaints; // with file names, which may be any bytes
};

void send(const MadeDocument& made, const Report& report) {
    report(asJson(made.pages).dump());
    report(sizeText(made.pages));
    for (const std::string& complaint : made.complaints) {
        report(complaint);
    }
}

PdfReport received(const std::vector<std::string>& reports) {
    return {Json::parse(reports[0]), reports[1], {reports.begin() + 2, reports.end()}};
}

// In a separate process, since the files are not to be trusted.
PdfReport makeApart(const Context& context, const OutputFile& file, const PdfOptions& options,
                    const PictureInputs& inputs) {
    const PictureLimits limits = pictureLimits();
    const std::size_t count = inputs.paths().size() + 1; // and the base
    const Bounds bounds{.bytes = limits.workingBytes() * count,
                        .processor = limits.working * count};
    const Apart made = runApart(*context.interrupt, bounds, [&](const Report& report) {
        send(PdfMaking(context, options, inputs).make(file), report);
    });
    if (made.end != ApartEnd::kDone || made.reports.size() < 2) {
        throw Failure(kUsage, "The files for " + file.target().string() +
                                  " cannot be put into a PDF; look whether they are sound.");
    }
    return received(made.reports);
}

int report(const Context& context, const std::string& target, const PdfReport& made) {
    const WrittenFile written = describeFile(target);
    const std::size_t pages = made.sizes.size();
    {
        Result result(context.options.json, asJson(written));
        result.value["pages"] = pages;
        result.value["sizes"] = made.sizes;
        result.tell(asText(written) + "  " + std::to_string(pages) +
                    (pages == 1 ? " page  " : " pages  ") + made.text);
    }
    for (const std::string& complaint : made.complaints) {
        complain(complaint);
    }
    return made.complaints.empty() ? kDone : kFileFailed;
}

int pdf(const Context& context, const PdfOptions& options) {
    if (options.append && isStandardStream(options.target)) {
        throw Failure(kUsage, "--append needs a file; name it instead of -.");
    }
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
    OutputFile file(options.target, options.force || options.append);
    const PictureInputs inputs(options.files, *context.interrupt);
    const PdfReport made = inputs.named([&] { return makeApart(context, file, options, inputs); });
    file.publish(draftOf(file));
    return report(context, file.target().string(), made);
}

} // namespace

void addPdfCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<PdfOptions>();
    CLI::App* command = app.add_subcommand("pdf", "Make one PDF of pictures and PDFs");
    command->add_option("OUT", options->target, "The PDF to write; - for standard output")
        ->required()
        ->type_name("");
    command
        ->add_option("FILE", options->files,
                     "Its pages, in order: pictures, all pictures of a TIFF, PDFs; - for standard "
                     "input")
        ->required()
        ->type_name("");
    addPaperOptions(*command, options->document.paper);
    addDocumentOptions(*command, options->document);
    command->add_flag("--append", options->append, "Add the pages to OUT if it exists");
    command->add_flag("--skip-bad", options->skipBad, "Leave out files that cannot become pages");
    command->add_flag("--force", options->force, "Replace a file that exists");
    command->footer("Examples:\n"
                    "  doccam pdf letter.pdf page1.jpg page2.jpg\n"
                    "  doccam pdf --paper a4 --ocr eng --compact letter.pdf page1.jpg\n"
                    "  doccam pdf --append all.pdf scan.tif other.pdf\n"
                    "  scanimage | doccam pdf - - >page.pdf");
    command->callback([&context, options] {
        context.run = [&context, options] { return pdf(context, *options); };
    });
}

} // namespace doccam::host
