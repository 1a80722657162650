// Reading all codes of a page of the camera's full size, against the two readers by themselves.
#include "code_readers.h"
#include "code_series.h"
#include "row.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

namespace doccam::bench {
namespace {

using test::CodeKind;
using test::PrintedCode;
using test::ReportedCode;

constexpr double kBound = 1.5;
constexpr int kRounds = 6;
constexpr double kSeconds = 1; // as hosts allow

using Codes = std::vector<ReportedCode>;

struct Page {
    std::vector<PrintedCode> codes;
    cv::Mat grey;

    bool isReadBy(const Codes& reported) const {
        return std::all_of(codes.begin(), codes.end(), [&](const PrintedCode& code) {
            return std::any_of(reported.begin(), reported.end(), [&](const ReportedCode& report) {
                return std::count(code.texts.begin(), code.texts.end(), report.text) > 0;
            });
        });
    }
};

// Text with the codes in its middle, a little crooked.
std::shared_ptr<const Page> pageWith(const std::vector<std::string>& kinds) {
    cv::RNG random(1);
    const auto page = std::make_shared<Page>();
    for (const std::string& name : kinds) {
        const auto kind = std::find_if(test::codeKinds().begin(), test::codeKinds().end(),
                                       [&](const CodeKind& each) { return each.name == name; });
        page->codes.push_back(kind->make(random));
    }
    test::Shot shot;
    shot.frame = {kWidth, kHeight};
    shot.module = 6;
    shot.angle = 2;
    shot.text = true;
    page->grey = takeShot(page->codes, shot, random);
    return page;
}

Contest reading(const std::vector<std::string>& kinds) {
    const auto page = pageWith(kinds);
    const auto ours = std::make_shared<Codes>();
    const auto theirs = std::make_shared<Codes>();
    return {
        .ours = [=] { *ours = test::readByDoccam(page->grey, kSeconds); },
        .peer =
            [=] {
                *theirs = test::readByZbar(page->grey);
                const Codes more = test::readByZxingHere(page->grey);
                theirs->insert(theirs->end(), more.begin(), more.end());
            },
        .same =
            [=] {
                return ours->size() == page->codes.size() && page->isReadBy(*ours) &&
                       page->isReadBy(*theirs);
            },
    };
}

Row row(const std::string& name, const std::vector<std::string>& kinds) {
    return {.name = "read codes, " + name,
            .peer = "zbar and ZXing by themselves",
            .bound = kBound,
            .contest = [kinds](const Picture& /*picture*/) { return reading(kinds); },
            .rounds = kRounds};
}

const Entry qr(row("one QR code", {"QR"}));
const Entry code128(row("one Code 128", {"Code 128"}));
const Entry six(row("six codes",
                    {"QR", "QR, 400 letters", "PDF417", "Code 128", "EAN-13", "Code 39"}));

} // namespace
} // namespace doccam::bench
