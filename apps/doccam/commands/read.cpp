// doccam read: bar codes and QR codes, of picture files or of what lies before the camera.
#include "codes/code_reading.h"
#include "commands/commands.h"
#include "commands/option_checks.h"
#include "commands/still_options.h"
#include "host/context.h"
#include "host/failure.h"
#include "host/own_output.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace doccam::host {
namespace {

constexpr int kLongestWait = 3600;

struct ReadOptions {
    StillOptions still;
    std::vector<std::string> files;
    std::string kind = "any";
    double seconds = 5;
};

std::vector<CodeKind> kindsOf(const std::string& name) {
    if (name == "any") {
        return {CodeKind::kQr, CodeKind::kBar};
    }
    return {name == "qr" ? CodeKind::kQr : CodeKind::kBar};
}

class Findings {
  public:
    Findings(bool json, bool named)
      : json_(json)
      , named_(named) {}

    void add(const std::string& source, const Code& code) {
        array_.push_back({{"source", source}, {"kind", nameOf(code.kind)}, {"text", code.text}});
        if (!json_) {
            printLine((named_ ? source + ": " : "") + nameOf(code.kind) + ": " + code.text);
        }
    }

    int finish(const std::string& nothing) const {
        if (json_) {
            printJson(array_);
        }
        if (array_.empty()) {
            throw Failure(kNothingFound, nothing);
        }
        return kDone;
    }

  private:
    bool json_;
    bool named_;
    Json array_ = Json::array();
};

int readFiles(const Context& context, const ReadOptions& options) {
    Findings findings(context.options.json, options.files.size() > 1);
    for (const std::string& file : options.files) {
        context.interrupt->check();
        for (const Code& code : codesInFile(file, kindsOf(options.kind))) {
            findings.add(file, code);
        }
    }
    return findings.finish("No code was found in " + options.files.front() +
                           (options.files.size() > 1 ? " and the other files" : "") +
                           "; take the picture closer or larger.");
}

int readLive(const Context& context, const ReadOptions& options) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<double>(options.seconds);
    const std::string source = "camera " + std::to_string(context.options.camera);
    Findings findings(context.options.json, false);
    {
        const auto session = openForStills(context, options.still);
        bool found = false;
        do {
            for (const CodeKind kind : kindsOf(options.kind)) {
                if (const std::string text = liveCode(*session, kind); !text.empty()) {
                    findings.add(source, {kind, text});
                    found = true;
                }
            }
        } while (!found && Clock::now() < end);
    }
    return findings.finish("No code was found before " + source +
                           "; bring it closer, or wait longer with --wait.");
}

int read(const Context& context, const ReadOptions& options) {
    return options.files.empty() ? readLive(context, options) : readFiles(context, options);
}

} // namespace

void addReadCommand(CLI::App& app, Context& context) {
    const auto options = std::make_shared<ReadOptions>();
    CLI::App* command =
        app.add_subcommand("read", "Read codes from picture files, or from the camera");
    command->add_option("FILE", options->files, "Pictures to read; none: the camera")
        ->type_name("");
    command->add_option("--kind", options->kind, "qr, bar or any")
        ->check(oneOf({"qr", "bar", "any"}))
        ->type_name("CHOICE");
    command->add_option("--wait", options->seconds, "How long to look for a code before the camera")
        ->check(between(0, kLongestWait))
        ->type_name("SECONDS");
    addCaptureOptions(*command, options->still);
    command->footer("Examples:\n"
                    "  doccam read\n"
                    "  doccam read --kind qr page.jpg other.png --json");
    command->callback([&context, options] {
        context.run = [&context, options] { return read(context, *options); };
    });
}

} // namespace doccam::host
