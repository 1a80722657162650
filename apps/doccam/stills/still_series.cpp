#include "stills/still_series.h"

#include "host/failure.h"
#include "pictures/written_file.h"

#include <filesystem>
#include <limits>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

std::tm now() {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    localtime_r(&seconds, &local);
    return local;
}

bool exists(const std::string& name) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(name, ignored));
}

std::string placeOf(const std::string& name) {
    return fs::weakly_canonical(fs::absolute(name)).string();
}

} // namespace

StillSeries::StillSeries(const std::vector<std::string>& names, int count, bool force)
  : rounds_(static_cast<std::size_t>(count))
  , force_(force) {
    for (const std::string& name : names) {
        refuseUnknownType(name);
        const NamePattern& pattern = patterns_.emplace_back(name);
        if (count > 1 && !pattern.hasNumber()) {
            throw Failure(kUsage, "The name " + name +
                                      " has no number for --count; write %03d in "
                                      "it.");
        }
        const std::size_t index = patterns_.size() - 1;
        if (pattern.varies()) {
            OutputFile(freeName(index), force);
            numbers_.clear();
        } else {
            fixed_[index] = claim(pattern.name(0, now()));
        }
    }
}

std::unique_ptr<OutputFile> StillSeries::claim(const std::string& name) {
    if (!used_.insert(placeOf(name)).second) {
        throw Failure(kUsage, "The file " + name +
                                  " is named twice; give each still a name "
                                  "of its own.");
    }
    return std::make_unique<OutputFile>(name, force_);
}

std::string StillSeries::freeName(std::size_t index) {
    const NamePattern& pattern = patterns_[index];
    int& number = numbers_[index];
    std::string name;
    do {
        if (number == std::numeric_limits<int>::max()) {
            throw Failure(kFileFailed, "There is no free number for " + name + ".");
        }
        name = pattern.name(++number, now());
    } while (pattern.hasNumber() && (used_.contains(placeOf(name)) || (!force_ && exists(name))));
    return name;
}

std::unique_ptr<OutputFile> StillSeries::next() {
    if (atEnd()) {
        return nullptr;
    }
    const std::size_t index = taken_++ % patterns_.size();
    const auto fixed = fixed_.find(index);
    return fixed != fixed_.end() ? std::move(fixed->second) : claim(freeName(index));
}

} // namespace doccam::host
