#include "clean/page_cleaning.h"

#include "clean/apart_work.h"
#include "documents/paper/density_stamp.h"
#include "documents/paper/desk.h"
#include "documents/paper/file_density.h"
#include "documents/paper/page_sizing.h"
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
    SizedPage sized{};
};

// Width, height, density and its source, the size in millimetres, and of a sheet its confidence and
// corners.
std::string asText(const PageReport& page) {
    std::ostringstream text;
    text.precision(12);
    text << page.size.width << ' ' << page.size.height << ' ' << page.sized.dpi << ' '
         << static_cast<int>(page.sized.from) << ' ' << page.sized.size.width << ' '
         << page.sized.size.height;
    if (page.sheet) {
        text << ' ' << page.sheet->confidence;
        for (const cv::Point2d& corner : page.sheet->corners) {
            text << ' ' << corner.x << ' ' << corner.y;
        }
    }
    return text.str();
}

// None for what the process apart cannot have reported in good order.
std::optional<PageReport> parsePage(const std::string& text) {
    constexpr std::size_t kOfPage = 6;
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
    const double source = numbers[3];
    if (source < 0 || source > static_cast<double>(DpiSource::kGuess)) {
        return std::nullopt;
    }
    PageReport page{{}, cv::Size(static_cast<int>(numbers[0]), static_cast<int>(numbers[1]))};
    page.sized.dpi = numbers[2];
    page.sized.from = static_cast<DpiSource>(source);
    page.sized.size = {numbers[4], numbers[5]};
    if (numbers.size() > kOfPage) {
        FoundSheet sheet{{}, numbers[kOfPage]};
        for (std::size_t i = 0; i < 4; ++i) {
            sheet.corners[i] = {numbers[kOfPage + 1 + 2 * i], numbers[kOfPage + 2 + 2 * i]};
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

// The size that the file's density gives the page.
std::optional<Millimetres> sizeInFile(const cv::Mat& picture, const std::optional<Density>& density,
                                      const std::optional<FoundSheet>& sheet) {
    const auto whole = credibleSize(picture.size(), density);
    return whole && sheet ? std::optional(sizeAt(sheet->corners, *density)) : whole;
}

std::optional<Density> densityOf(const std::string& file) {
    FileBytes bytes(file);
    return readDensity(bytes);
}

void writePages(const std::string& file, const CleanOptions& options, const OutputFile& target,
                const Report& report) {
    const cv::Mat picture = readPicture(file, cv::IMREAD_COLOR);
    const auto density = densityOf(file);
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
        made.size = {page->width, page->height};
        made.sized = sizePage(made.size, {.options = options.paper,
                                          .inFile = sizeInFile(picture, density, made.sheet)});
        auto bytes = encodePage(draft, *page, recipe.quality);
        stampDensity(bytes, made.size, made.sized);
        writeBytes(target, draft, bytes);
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
        pages.push_back(
            {made->sheet, describeFile(targets[i]->target().string(), made->size), made->sized});
    }
    return pages;
}

} // namespace doccam::host
