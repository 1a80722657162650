#include "clean/clean_options.h"

#include "host/failure.h"

#include <filesystem>
#include <map>
#include <string>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

bool isBlackAndWhite(const CleanOptions& options) {
    return options.colour == Colour::kBlackAndWhite;
}

[[noreturn]] void failTogether(const std::string& one, const std::string& other) {
    throw Failure(kUsage, one + " and " + other + " do not go together; leave out one of them.");
}

// The first option of the older steps, which know neither looks nor sheets; empty if none is given.
std::string olderStep(const CleanOptions& options) {
    if (options.crop == Crop::kRectangle) {
        return "--crop=rectangle";
    }
    if (options.edges) {
        return "--edges";
    }
    if (options.background) {
        return "--background";
    }
    return options.brightSheet ? "--bright-sheet" : "";
}

std::string pageEngineStep(const CleanOptions& options) {
    if (options.look) {
        return "--look";
    }
    if (options.each) {
        return "--each";
    }
    if (options.crop == Crop::kSheet) {
        return "--crop";
    }
    return options.colour && options.crop != Crop::kRectangle ? "--colour" : "";
}

// With --force the later of two would replace the page of the earlier.
void refuseSameTargets(const CleanOptions& options) {
    std::map<fs::path, std::string> files;
    for (const std::string& file : options.files) {
        const fs::path target = fs::absolute(targetOf(file, options)).lexically_normal();
        const auto [other, isNew] = files.emplace(target, file);
        if (!isNew) {
            throw Failure(kUsage, other->second + " and " + file + " would both become " +
                                      targetOf(file, options) + "; clean them one by one.");
        }
    }
}

} // namespace

bool wantsSheet(const CleanOptions& options) {
    return options.crop == Crop::kSheet || options.each;
}

bool byPageEngine(const CleanOptions& options) {
    return !pageEngineStep(options).empty();
}

void refuseContradictions(const CleanOptions& options) {
    refuseSameTargets(options);
    if (!olderStep(options).empty() && byPageEngine(options)) {
        failTogether(olderStep(options), pageEngineStep(options));
    }
    if (!byPageEngine(options) && !(options.paper == PaperOptions())) {
        throw Failure(kUsage, "--dpi and --paper are for pages; add --crop, --each, --look or "
                              "--colour.");
    }
    if (options.brightSheet && options.crop == Crop::kRectangle) {
        failTogether("--bright-sheet", "--crop=rectangle");
    }
    if (options.inPlace && options.each) {
        failTogether("--in-place", "--each");
    }
    for (const std::string& file : options.files) {
        if (options.inPlace && isBlackAndWhite(options) && fs::path(file).extension() != ".png") {
            throw Failure(kUsage, "Pages in black and white are PNG files, and " + file +
                                      " is none; leave out --in-place.");
        }
    }
}

std::string targetOf(const std::string& file, const CleanOptions& options) {
    fs::path target = file;
    if (!options.target.empty()) {
        return options.target;
    }
    if (options.inPlace) {
        return target;
    }
    if (options.folder.empty()) {
        target.replace_filename(target.stem().string() + "-clean" + target.extension().string());
    } else {
        target = fs::path(options.folder) / target.filename();
    }
    return isBlackAndWhite(options) ? target.replace_extension(".png") : target;
}

std::string numberedTarget(const std::string& target, int number) {
    fs::path path = target;
    return path.replace_filename(path.stem().string() + "-" + std::to_string(number) +
                                 path.extension().string());
}

} // namespace doccam::host
