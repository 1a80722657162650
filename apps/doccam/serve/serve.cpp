#include "serve/serve.h"

#include "host/confinement/confinement.h"
#include "host/failure.h"
#include "host/own_output.h"
#include "host/state_folder.h"
#include "serve/access/access.h"
#include "serve/access/token_file.h"
#include "serve/commands/commands.h"
#include "serve/live/code_finder.h"
#include "serve/live/live_camera.h"
#include "serve/live/picture_encoder.h"
#include "serve/live/sheet_finder.h"
#include "serve/owned_thread.h"
#include "serve/site/http_server.h"

#include <exception>
#include <filesystem>

namespace doccam::serve {
namespace {

constexpr int kMaximumViewers = 8;
constexpr int kMaximumWatchers = 16; // as many as listeners
constexpr std::chrono::milliseconds kWatchEvery{50};

// Encodes the handed-over pictures for the feed, on its own thread.
class Encoding {
  public:
    Encoding(PictureHandover& handover, PictureFeed& feed)
      : handover_(handover)
      , feed_(feed)
      , thread_(ownedThread([this] { run(); })) {}

    ~Encoding() {
        feed_.close();
        handover_.close();
    }

  private:
    void run() {
        FormPicture picture;
        while (feed_.awaitViewer() && handover_.take(picture)) {
            try {
                feed_.publish(encoder_.encode(picture));
            } catch (const std::exception&) {
                continue; // the next picture may work again
            }
        }
    }

    PictureHandover& handover_;
    PictureFeed& feed_;
    PictureEncoder encoder_;
    std::jthread thread_;
};

void print(const ServeOptions& options, const std::vector<std::string>& addresses) {
    if (options.json) {
        host::printJson({{"addresses", addresses}});
    }
    for (const std::string& address : options.json ? std::vector<std::string>{} : addresses) {
        host::printLine("Open " + address);
    }
    host::finishOutput();
}

void tell(const std::string& sentence) {
    if (!sentence.empty()) {
        host::complain(sentence);
    }
}

// The server runs with or without a camera; only an unsupported format or size ends it.
void openIfThere(LiveCamera& camera) {
    try {
        camera.open();
    } catch (const host::Failure& failure) {
        if (failure.code() == host::kUsage || failure.code() == host::kInterrupted) {
            throw;
        }
    } catch (const std::exception&) { // it may have been unplugged; watch() looks for it
    }
}

host::Reach reachOf(const TrayPlace& place) {
    host::Reach reach{.write = {place.folder()}, .cameras = true, .connections = true};
    if (place.spool() != nullptr) {
        reach.keep = {place.spool()->path()};
    }
    const std::filesystem::path configured = host::configFolder();
    if (!configured.empty() &&
        std::filesystem::exists(configured)) { // with the calibrations of cameras
        reach.read = {configured};
    }
    return reach;
}

void serveUntilAsked(const ServeOptions& options, host::Interrupt& interrupt) {
    PictureHandover handover;
    PictureFeed pictures;
    EventFeed events;
    CommandQueue queue;
    const TrayPlace place(!options.noSpool);
    const std::string token = keptToken(host::stateFolder());
    const host::Reach reach = reachOf(place);
    if (options.confined) {
        host::confineFiles(reach, interrupt);
    }
    SheetFinder sheets(events);
    CodeFinder codes(events);
    Seats viewers(kMaximumViewers, [&](int count) {
        handover.setWanted(count > 0);
        sheets.looks().setWanted(count > 0);
        if (count == 0) {
            pictures.clear();
        }
    });
    Seats watchers(kMaximumWatchers, [&](int count) { codes.looks().setWanted(count > 0); });
    LiveCamera camera(options.choice, interrupt, handover, {&sheets.looks(), &codes.looks()},
                      events);
    // Ends before the camera, whose closing may take all the time there is.
    const TrayDocument document(place);
    PageStore pages(document);
    Commands commands(camera, pages, events);
    DocumentMaker documents(pages);
    const Encoding encoding(handover, pictures);
    HttpServer server({queue, commands, pages, documents, pictures, events, viewers, watchers});
    const int port = server.bind(options.address, options.port);
    const AccessRules rules = rulesFor(options.address, port, token);
    const std::vector<std::string> addresses = addressesOf(options.address, port, rules.token);
    if (options.confined) {
        host::confineCalls(reach);
    }
    openIfThere(camera);
    server.start(rules);
    tell(document.takenUpSentence());
    print(options, addresses);
    while (!interrupt.raised() && queue.serve(kWatchEvery)) {
        camera.watch();
    }
    tell(document.leftSentence());
}

} // namespace

int serve(const ServeOptions& options, host::Interrupt& interrupt) {
    try {
        serveUntilAsked(options, interrupt);
    } catch (const host::Interruption&) { // while a camera was being opened
    }
    return host::kDone;
}

} // namespace doccam::serve
