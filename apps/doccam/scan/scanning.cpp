#include "scan/scanning.h"

#include "host/own_output.h"
#include "scan/line_input.h"
#include "scan/sheet_watch.h"

#include <optional>

namespace doccam::host {
namespace {

std::string ofAll(std::size_t page, const ScanPlan& plan) {
    return std::to_string(page) + (plan.pages > 0 ? " of " + std::to_string(plan.pages) : "");
}

std::string takenText(const PageDraft& page, std::size_t number, const ScanPlan& plan) {
    return "page " + ofAll(number, plan) + " taken, " + std::to_string(page.size.width) + "x" +
           std::to_string(page.size.height) +
           (page.cropped || plan.whole ? "" : ", the whole frame as no sheet was found");
}

bool complete(const PageStack& stack, const ScanPlan& plan) {
    return plan.pages > 0 && stack.count() >= static_cast<std::size_t>(plan.pages);
}

// Does what the user's lines ask for.
class EnterScan {
  public:
    EnterScan(CameraSession& session, PageStack& stack, const ScanPlan& plan)
      : session_(session)
      , stack_(stack)
      , plan_(plan) {}

    void run() {
        progress_.show("Enter takes page " + ofAll(stack_.count() + 1, plan_) +
                       ", q and Enter ends");
        while (!complete(stack_, plan_)) {
            const auto line = input_.takeLine();
            if (!line && input_.ended()) {
                return;
            }
            if (!line) {
                session_.waitForEvent({input_.descriptor()});
            } else if (!obey(commandOf(*line))) {
                return;
            }
        }
    }

  private:
    // False if it is the end.
    bool obey(LineCommand command) {
        switch (command) {
        case LineCommand::kTake:
            take();
            return true;
        case LineCommand::kRetake:
            retake();
            return true;
        case LineCommand::kDrop:
            drop();
            return true;
        case LineCommand::kSave:
            return false;
        default:
            progress_.show("Enter alone takes a page, r takes the last again, d drops it, q saves");
            return true;
        }
    }

    void take() {
        const PageDraft draft = stack_.draft();
        stack_.add(draft);
        progress_.show(takenText(draft, stack_.count(), plan_) +
                       "; Enter takes the next, r takes it again, d drops it");
    }

    void retake() {
        if (!hasPage()) {
            return;
        }
        const PageDraft draft = stack_.draft();
        stack_.retakeLast(draft);
        progress_.show(takenText(draft, stack_.count(), plan_) + " again; Enter takes the next");
    }

    void drop() {
        if (!hasPage()) {
            return;
        }
        const std::string number = std::to_string(stack_.count());
        stack_.dropLast();
        progress_.show("page " + number + " dropped; Enter takes another");
    }

    bool hasPage() {
        if (stack_.count() == 0) {
            progress_.show("there is no page yet; Enter takes one");
        }
        return stack_.count() > 0;
    }

    CameraSession& session_;
    PageStack& stack_;
    const ScanPlan& plan_;
    LineInput input_;
    ProgressLine progress_;
};

class AutomaticScan {
  public:
    AutomaticScan(CameraSession& session, PageStack& stack, const ScanPlan& plan)
      : session_(session)
      , stack_(stack)
      , plan_(plan)
      , frames_(session) {}

    void run() {
        progress_.show("put down page " + ofAll(stack_.count() + 1, plan_));
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
    bool endIsRequested() {
        const auto line = input_.takeLine();
        if (!line) {
            return plan_.pages == 0 && input_.ended();
        }
        switch (commandOf(*line)) {
        case LineCommand::kTake:
        case LineCommand::kSave:
            return true;
        case LineCommand::kDrop:
            drop();
            return false;
        default:
            progress_.show("Enter ends, d drops the last page");
            return false;
        }
    }

    void drop() {
        if (stack_.count() == 0) {
            progress_.show("there is no page yet; put down page " + ofAll(1, plan_));
            return;
        }
        const std::string number = std::to_string(stack_.count());
        stack_.dropLast();
        progress_.show("page " + number + " dropped; put down another");
    }

    // An empty desk also has an outline: its own.
    std::optional<PageDraft> shownPage(const cv::Mat& frame) {
        if (!showsSomething(frame)) {
            return std::nullopt;
        }
        PageDraft draft = stack_.draft();
        return plan_.whole || draft.cropped ? std::optional(std::move(draft)) : std::nullopt;
    }

    // A sheet that moved while it was taken is taken again once it lies still.
    void take(const cv::Mat& frame) {
        const auto draft = shownPage(frame);
        frames_.resume();
        const bool unmoved = watch_.isUnmoved(frames_.next());
        if (draft && unmoved) {
            stack_.add(*draft);
            watch_.noteTaken();
            progress_.show(takenText(*draft, stack_.count(), plan_) +
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

void scanPages(CameraSession& session, PageStack& stack, const ScanPlan& plan) {
    if (plan.automatic) {
        AutomaticScan(session, stack, plan).run();
    } else {
        EnterScan(session, stack, plan).run();
    }
}

} // namespace doccam::host
