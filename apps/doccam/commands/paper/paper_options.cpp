#include "commands/paper/paper_options.h"

#include "documents/paper/paper_names.h"
#include "host/texts.h"

namespace doccam::host {
namespace {

std::string refuseOddDpi(const std::string& text) {
    return parseDpi(text) ? "" : "\"" + text + "\" is no number from 20 to 2400";
}

} // namespace

std::string refuseOddPaper(const std::string& text) {
    const auto name = [](const NamedPaper& paper) { return std::string(paper.name); };
    return parsePaper(text) ? ""
                            : "\"" + text + "\" is none of " + listed(namedPapers(), name) +
                                  ", and no size in millimetres like 100x150";
}

void addPaperOptions(CLI::App& command, PaperOptions& options) {
    command
        .add_option_function<std::string>(
            "--dpi", [&options](const std::string& text) { options.dpi = parseDpi(text); },
            "True size of the pages by their pixels per inch, 20 to 2400")
        ->check(refuseOddDpi)
        ->type_name("N");
    command
        .add_option_function<std::string>(
            "--paper", [&options](const std::string& text) { options.paper = parsePaper(text); },
            "True size of the pages: a3, a4, a5, letter, legal, id1, or WIDTHxHEIGHT in "
            "millimetres; turned like the page")
        ->check(refuseOddPaper)
        ->type_name("PAPER");
}

} // namespace doccam::host
