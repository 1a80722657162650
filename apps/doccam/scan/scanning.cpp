#include "scan/scanning.h"

#include "host/own_output.h"
#include "pictures/written_file.h"
#include "scan/sheet_watch.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <deque>
#include <filesystem>
#include <optional>

namespace doccam::host {
namespace {

constexpr const char* kEndWord = "q";

// Reads lines that the user types, without blocking.
class LineInput {
  public:
    // To wait for; negative once the input has ended, so that poll() ignores it.
    int descriptor() const { return ended_ ? -1 : STDIN_FILENO; }

    bool ended() const { return ended_; }

    // The next complete line without its newline; none if there is none yet.
    std::optional<std::string> takeLine() {
        readAvailable();
        if (lines_.empty()) {
            return std::nullopt;
        }
        std::string line = std::move(lines_.front());
        lines_.pop_front();
        return line;
    }

  private:
    void readAvailable() {
        pollfd state{descriptor(), POLLIN, 0};
        while (!ended_ && poll(&state, 1, 0) > 0) {
            std::array<char, 256> chunk{};
            const ssize_t count = read(STDIN_FILENO, chunk.data(), chunk.size());
            ended_ = count <= 0;
            for (ssize_t i = 0; i < count; ++i) {
                const char letter = chunk[static_cast<std::size_t>(i)];
                if (letter == '\n') {
                    lines_.push_back(std::move(begun_));
                    begun_.clear();
                } else {
                    begun_ += letter;
                }
            }
        }
    }

    std::string begun_;
    std::deque<std::string> lines_;
    bool ended_ = false;
};

std::string ofAll(std::size_t page, const ScanPlan& plan) {
    return std::to_string(page) + (plan.pages > 0 ? " of " + std::to_string(plan.pages) : "");
}

std::string takenText(const ScannedPage& page, std::size_t number, const ScanPlan& plan) {
    return "page " + ofAll(number, plan) + " taken, " + std::to_string(page.width) + "x" +
           std::to_string(page.height) +
           (page.cropped || plan.whole ? "" : ", the whole frame as no sheet was found");
}

bool complete(const PageStack& stack, const ScanPlan& plan) {
    return plan.pages > 0 && stack.pages().size() >= static_cast<std::size_t>(plan.pages);
}

// Takes a page at each entered line.
void scanAtEnter(CameraSession& session, PageStack& stack, const ScanPlan& plan) {
    LineInput input;
    ProgressLine progress;
    progress.show("Enter takes page " + ofAll(1, plan) + ", q and Enter ends");
    while (!complete(stack, plan)) {
        const auto line = input.takeLine();
        if (line == kEndWord || (!line && input.ended())) {
            return;
        }
        if (!line) {
            session.waitForEvent({input.descriptor()});
            continue;
        }
        const ScannedPage& page = stack.take(!plan.whole && session.findSheet());
        progress.show(takenText(page, stack.pages().size(), plan) + "; Enter takes the next");
    }
}

class AutomaticScan {
  public:
    AutomaticScan(CameraSession& session, PageStack& stack, const ScanPlan& plan)
      : session_(session)
      , stack_(stack)
      , plan_(plan)
      , frames_(session) {}

    void run() {
        progress_.show("put down page " + ofAll(1, plan_));
        while (!complete(stack_, plan_) && !endIsRequested()) {
            session_.waitForEvent({input_.descriptor()});
            const cv::Mat frame = frames_.take();
            if (!frame.empty() && watch_.seesNewPage(frame)) {
                take(frame);
            }
        }
    }

  private:
    // Without a number of pages the end of the input also ends the scan, as nothing else would.
    bool endIsRequested() { return input_.takeLine() || (plan_.pages == 0 && input_.ended()); }

    // An empty desk also has an outline: its own.
    bool showsPage(const cv::Mat& frame) {
        return showsSomething(frame) && (plan_.whole || session_.findSheet());
    }

    // A sheet that moved while it was taken is taken again once it lies still.
    void take(const cv::Mat& frame) {
        const bool shown = showsPage(frame);
        if (shown) {
            stack_.take(!plan_.whole);
        }
        frames_.resume();
        const bool unmoved = watch_.isUnmoved(frames_.next());
        if (shown && !unmoved) {
            stack_.discardLast();
        } else if (shown) {
            watch_.noteTaken();
            progress_.show(takenText(stack_.pages().back(), stack_.pages().size(), plan_) +
                           (complete(stack_, plan_) ? "" : "; put down the next"));
        } else if (unmoved) {
            dismiss(frame);
        }
    }

    void dismiss(const cv::Mat& frame) {
        watch_.noteDismissed();
        if (showsSomething(frame)) {
            progress_.show("no sheet is found; lay it on a dark desk, or scan with --whole-frame");
        }
    }

    CameraSession& session_;
    PageStack& stack_;
    const ScanPlan& plan_;
    SheetWatch watch_;
    WatchedFrames frames_;
    LineInput input_;
    ProgressLine progress_;
};

} // namespace

const ScannedPage& PageStack::take(bool crop) {
    const std::string path = file_.part("scan" + std::to_string(pages_.size() + 1) + ".jpg");
    session_.still(path, crop);
    const WrittenFile written = describeFile(path);
    return pages_.emplace_back(ScannedPage{path, written.width, written.height, crop});
}

void PageStack::discardLast() {
    std::error_code ignored;
    std::filesystem::remove(pages_.back().path, ignored);
    pages_.pop_back();
}

void scanPages(CameraSession& session, PageStack& stack, const ScanPlan& plan) {
    if (plan.automatic) {
        AutomaticScan(session, stack, plan).run();
    } else {
        scanAtEnter(session, stack, plan);
    }
}

} // namespace doccam::host
