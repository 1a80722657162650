#include "scan/scanning.h"

#include "host/own_output.h"
#include "scan/line_input.h"
#include "scan/sheet_watch.h"
#include "scan/watched_frames.h"

#include <string>

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
        if (!complete(stack_, plan_)) {
            progress_.show("Enter takes page " + ofAll(stack_.count() + 1, plan_) +
                           ", q and Enter ends");
        }
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

// What the user can do about what is seen.
std::string adviceOn(Sight sight) {
    switch (sight) {
    case Sight::kDark:
        return "it is too dark; give the sheet more light";
    case Sight::kFlickering:
        return "the picture does not come to rest, as its light flickers; use another lamp";
    case Sight::kMoving:
        return "the picture does not come to rest, as something moves in it; take it out";
    default:
        return "no sheet is found; lay it on a dark desk, or scan with --whole-frame";
    }
}

class AutomaticScan {
  public:
    AutomaticScan(CameraSession& session, PageStack& stack, const ScanPlan& plan)
      : session_(session)
      , stack_(stack)
      , plan_(plan)
      , watch_(plan.whole)
      , frames_(session) {
        // It may still lie there from before.
        if (const cv::Mat last = stack.lastFrame(); !last.empty()) {
            watch_.know(last, stack.lastIsCropped());
        }
    }

    void run() {
        if (!complete(stack_, plan_)) {
            progress_.show("put down page " + ofAll(stack_.count() + 1, plan_));
        }
        while (!complete(stack_, plan_) && !endIsRequested()) {
            session_.waitForEvent({input_.descriptor()});
            if (frames_.take(frame_)) {
                look();
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

    // The same advice is given once between two pages.
    void look() {
        const Sight sight = watch_.see(frame_);
        if (sight == Sight::kNewSheet) {
            take();
        } else if (sight != Sight::kNothing && sight != advised_) {
            advised_ = sight;
            progress_.show(adviceOn(sight));
        }
    }

    void take() {
        const PageDraft draft =
            stack_.draft(watch_.file(), watch_.picture().size(), watch_.sheet());
        if (draft.origin.finished && hasMoved()) {
            return;
        }
        stack_.add(draft);
        watch_.noteTaken();
        advised_ = Sight::kNothing;
        progress_.show(takenText(draft, stack_.count(), plan_) +
                       (complete(stack_, plan_) ? "" : "; put down the next"));
    }

    // A still is taken of a later frame. A sheet that has moved by then is taken at its next rest.
    bool hasMoved() {
        frames_.resume();
        while (!frames_.take(frame_)) {
            session_.waitForEvent();
        }
        watch_.see(frame_);
        return !watch_.rests();
    }

    CameraSession& session_;
    PageStack& stack_;
    const ScanPlan& plan_;
    SheetWatch watch_;
    WatchedFrames frames_;
    WatchedFrame frame_;
    Sight advised_ = Sight::kNothing;
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
