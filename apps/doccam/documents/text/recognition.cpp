#include "documents/text/recognition.h"

#include "documents/text/languages.h"
#include "documents/text/orientation.h"
#include "documents/text/tesseract.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <atomic>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <optional>
#include <thread>

namespace doccam::host {
namespace {

constexpr char kPackage[] = "; install the package ";

// What can be done of what was asked for.
struct Ability {
    std::optional<Tesseract> tesseract{};
    std::vector<std::string> languages{};
    bool upright = false;
};

std::string withoutProgram(bool words, bool upright) {
    const std::string what = !upright ? "Words are not recognized"
                             : !words ? "Pages are not turned upright"
                                      : "Words are not recognized and pages not turned upright";
    return what + " without tesseract" + kPackage + "tesseract-ocr.";
}

Ability abilityFor(const TextOptions& options, const Interrupt& interrupt,
                   std::vector<std::string>& complaints) {
    const std::vector<std::string> wanted = languagesIn(options.languages);
    if (wanted.empty() && !options.upright) {
        return {};
    }
    Ability ability{.tesseract = Tesseract::find(interrupt)};
    if (!ability.tesseract) {
        complaints.push_back(withoutProgram(!wanted.empty(), options.upright));
        return ability;
    }
    const std::set<std::string> known = ability.tesseract->languages();
    for (const std::string& language : wanted) {
        if (known.contains(language)) {
            ability.languages.push_back(language);
        } else {
            complaints.push_back(
                "Words in the language " + language + " are not recognized" +
                (mayBePackaged(language)
                     ? kPackage + packageOf(language) + "."
                     : "; tesseract's own names have three letters, as eng and deu."));
        }
    }
    ability.upright = options.upright && known.contains("osd");
    if (options.upright && !ability.upright) {
        complaints.push_back(std::string("Pages are not turned upright") + kPackage +
                             packageOf("osd") + ".");
    }
    return ability;
}

cv::Mat asGrey(const cv::Mat& picture) {
    if (picture.channels() == 1) {
        return picture;
    }
    cv::Mat grey;
    cv::cvtColor(picture, grey, cv::COLOR_BGR2GRAY);
    return grey;
}

void turn(cv::Mat& grey, int quarters) {
    constexpr std::array kTurns{cv::ROTATE_90_CLOCKWISE, cv::ROTATE_180,
                                cv::ROTATE_90_COUNTERCLOCKWISE};
    if (quarters != 0) {
        cv::Mat turned;
        cv::rotate(grey, turned, kTurns.at(static_cast<std::size_t>(quarters) - 1));
        grey = turned;
    }
}

bool hasWords(const std::string& text) {
    std::ifstream file(text);
    std::string word;
    return static_cast<bool>(file >> word);
}

void removeFile(const std::string& path) {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

// The pages, of which each thread takes the next.
class Recognition {
  public:
    Recognition(const std::vector<PageForText>& pages, const Ability& ability,
                const std::string& folder)
      : pages_(pages)
      , ability_(ability)
      , folder_(std::filesystem::absolute(folder))
      , texts_(pages.size())
      , complaints_(pages.size()) {}

    void run() {
        const std::size_t processors = std::max(std::thread::hardware_concurrency(), 1U);
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < std::min(processors, pages_.size()); ++i) {
            threads.emplace_back([this] { takePages(); });
        }
        threads.clear();
        if (failure_) {
            std::rethrow_exception(failure_);
        }
    }

    RecognizedPages take(std::vector<std::string> complaints) {
        std::copy_if(complaints_.begin(), complaints_.end(), std::back_inserter(complaints),
                     [](const std::string& complaint) { return !complaint.empty(); });
        return {std::move(texts_), std::move(complaints)};
    }

  private:
    void takePages() noexcept {
        try {
            for (std::size_t i = next_++; i < pages_.size() && !failed_; i = next_++) {
                recognizePage(i);
            }
        } catch (...) {
            const std::lock_guard lock(mutex_);
            failure_ = failure_ ? failure_ : std::current_exception();
            failed_ = true;
        }
    }

    cv::Mat picture(std::size_t page) {
        const std::lock_guard lock(mutex_);
        return asGrey(pages_[page].picture());
    }

    void recognizePage(std::size_t page) {
        const std::string stem = folder_ / ("text-" + std::to_string(page + 1));
        cv::Mat grey = picture(page);
        if (ability_.upright) {
            const int turns = quarterTurnsOf(grey, pages_[page].dpi, *ability_.tesseract, stem);
            texts_[page].quarterTurns = turns;
            turn(grey, turns);
        }
        if (!ability_.languages.empty()) {
            writeGrey(stem + ".pgm", grey);
            grey.release();
            readWords(page, stem);
        }
    }

    void readWords(std::size_t page, const std::string& stem) {
        const ProgramEnd end =
            ability_.tesseract->read({stem + ".pgm", pages_[page].dpi}, ability_.languages, stem);
        if (end == ProgramEnd::kDone && hasWords(stem + ".txt")) {
            texts_[page].pdf = stem + ".pdf";
        } else {
            removeFile(stem + ".pdf");
        }
        if (end != ProgramEnd::kDone) {
            complaints_[page] = "The words of page " + std::to_string(pages_[page].number) +
                                " are not recognized, as tesseract " +
                                (end == ProgramEnd::kOutOfTime ? "takes too long." : "fails.");
        }
        removeFile(stem + ".txt");
        removeFile(stem + ".pgm");
    }

    const std::vector<PageForText>& pages_;
    const Ability& ability_;
    const std::filesystem::path folder_;
    std::vector<PageText> texts_;
    std::vector<std::string> complaints_; // of each page, empty without
    std::atomic<std::size_t> next_{0};
    std::atomic<bool> failed_{false};
    std::mutex mutex_; // for the caller's pictures and for failure_
    std::exception_ptr failure_;
};

} // namespace

RecognizedPages recognize(const std::vector<PageForText>& pages, const TextOptions& options,
                          const std::string& folder, const Interrupt& interrupt) {
    std::vector<std::string> complaints;
    const Ability ability = abilityFor(options, interrupt, complaints);
    if (ability.languages.empty() && !ability.upright) {
        return {std::vector<PageText>(pages.size()), std::move(complaints)};
    }
    Recognition recognition(pages, ability, folder);
    recognition.run();
    return recognition.take(std::move(complaints));
}

} // namespace doccam::host
