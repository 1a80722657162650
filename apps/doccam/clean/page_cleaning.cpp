#include "clean/page_cleaning.h"

#include "clean/apart_work.h"
#include "host/output_file.h"
#include "host/texts.h"
#include "pages/rendering.h"
#include "pictures/reading.h"
#include "pictures/writing.h"

#include <opencv2/imgcodecs.hpp>

#include <cmath>
#include <memory>
#include <sstream>

namespace doccam::host {
namespace {

constexpr int kMaximumSheets = 20;

std::string draftOf(const OutputFile& target, std::size_t page) {
    return target.part("page" + std::to_string(page) + target.target().extension().string());
}

struct PageReport {
    std::optional<FoundSheet> sheet;
    cv::Size size;
};

// Width, height, and of a sheet its confidence and corners.
std::string asText(const PageReport& page) {
    std::ostringstream text;
    text << page.size.width << ' ' << page.size.height;
    if (page.sheet) {
        text.precision(12);
        text << ' ' << page.sheet->confidence;
        for (const cv::Point2d& corner : page.sheet->corners) {
            text << ' ' << corner.x << ' ' << corner.y;
        }
    }
    return text.str();
}

// None for what the process apart cannot have reported in good order.
std::optional<PageReport> parsePage(const std::string& text) {
    constexpr std::size_t kOfPage = 2;
    constexpr std::size_t kOfSheet = 9;
    std::vector<double> numbers;
    std::istringstream words(text);
    for (std::string word; words >> word && numbers.size() <= kOfPage + kOfSheet;) {
        const auto number = parseNumber<double>(word);
        if (!number || !std::isfinite(*number) || std::abs(*number) > 1e6) {
            return std::nullopt;
        }
        numbers.push_back(*number);
    }
    if (numbers.size() != kOfPage && numbers.size() != kOfPage + kOfSheet) {
        return std::nullopt;
    }
    PageReport page{{}, cv::Size(static_cast<int>(numbers[0]), static_cast<int>(numbers[1]))};
    if (numbers.size() > kOfPage) {
        FoundSheet sheet{{}, numbers[2]};
        for (std::size_t i = 0; i < 4; ++i) {
            sheet.corners[i] = {numbers[3 + 2 * i], numbers[4 + 2 * i]};
        }
        page.sheet = sheet;
    }
    return page;
}

// The pages to make: none where a sheet is wanted and there is none.
std::vector<PageReport> pagesOf(const cv::Mat& picture, const CleanOptions& options) {
    if (!wantsSheet(options)) {
        return {PageReport{}};
    }
    std::vector<PageReport> pages;
    for (const FoundSheet& sheet : findSheets(picture, options.each ? kMaximumSheets : 1)) {
        pages.push_back({sheet, {}});
    }
    return pages;
}

void writePages(const std::string& file, const CleanOptions& options, const OutputFile& target,
                const Report& report) {
    const cv::Mat picture = readPicture(file, cv::IMREAD_COLOR);
    std::size_t number = 0;
    for (PageReport made : pagesOf(picture, options)) {
        Recipe recipe{.look = options.look.value_or(Look::kPaper),
                      .colour = options.colour.value_or(Colour::kColour),
                      .quality = options.quality};
        if (made.sheet) {
            recipe.corners = made.sheet->corners;
        }
        const Page page = renderPage(picture, recipe);
        const std::string draft = draftOf(target, ++number);
        writeBytes(target, draft, encodePage(draft, *page, recipe.quality));
        made.size = {page->width, page->height};
        report(asText(made));
    }
}

// The targets of all pages, none of which may exist.
std::vector<std::unique_ptr<OutputFile>> claim(const OutputFile& first, std::size_t pages,
                                               const CleanOptions& options) {
    std::vector<std::unique_ptr<OutputFile>> targets;
    for (std::size_t i = 1; i <= pages; ++i) {
        targets.push_back(std::make_unique<OutputFile>(
            options.each ? numberedTarget(first.target(), static_cast<int>(i))
                         : first.target().string(),
            options.force));
    }
    return targets;
}

} // namespace

std::vector<CleanedPage> cleanPages(const Context& context, const std::string& file,
                                    const CleanOptions& options) {
    requirePicture(file);
    const std::string target = targetOf(file, options);
    const OutputFile work(target, options.force || options.each);
    const auto reports = workApart(
        context, file, [&](const Report& report) { writePages(file, options, work, report); });
    std::vector<CleanedPage> pages;
    const auto targets = claim(work, reports.size(), options);
    for (std::size_t i = 0; i < reports.size(); ++i) {
        const auto made = parsePage(reports[i]);
        if (!made) {
            failToClean(file);
        }
        targets[i]->publish(draftOf(work, i + 1));
        pages.push_back({made->sheet, describeFile(targets[i]->target().string(), made->size)});
    }
    return pages;
}

} // namespace doccam::host
