#include "host/output_file.h"

#include "base/files/file_placement.h"
#include "base/handles/standard_file.h"
#include "host/failure.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace doccam::host {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void failToWrite(const fs::path& target, const std::string& why) {
    throw Failure(kFileFailed, target.string() + " could not be written: " + why);
}

[[noreturn]] void refuseToReplace(const fs::path& target) {
    throw Failure(kFileFailed, target.string() +
                                   " exists already; choose another name, or add --force to "
                                   "replace it.");
}

// A link is followed, so that the file it names is replaced and not the link.
fs::path resolved(const fs::path& target) {
    std::error_code error;
    const fs::path followed = fs::canonical(target, error);
    return error ? target : followed;
}

void refuseOddTargets(const fs::path& target, bool force) {
    std::error_code ignored;
    if (!target.has_filename()) {
        failToWrite(target, "the name is that of a folder; name a file.");
    }
    const fs::file_status status = fs::symlink_status(target, ignored);
    if (!fs::exists(status)) {
        return;
    }
    if (!fs::is_regular_file(status)) {
        failToWrite(target, "it is no regular file; choose another name.");
    }
    if (!force) {
        refuseToReplace(target);
    }
}

fs::path folderOf(const fs::path& target) {
    return target.has_parent_path() ? target.parent_path() : fs::path(".");
}

bool replaceKeepingOwner(const std::string& path, const std::string& place) {
    if (const auto existing = statusOf(place)) {
        if (const StandardFile file{std::fopen(path.c_str(), "r+be")}) {
            takeOver(fileno(file.get()), *existing);
        }
    }
    return replaceFile(path, place);
}

} // namespace

OutputFile::OutputFile(const fs::path& target, bool force)
  : target_(target)
  , place_(force ? resolved(target) : target)
  , force_(force) {
    refuseOddTargets(place_, force_);
    work_.emplace(folderOf(place_));
    if (work_->path().empty()) {
        failToWrite(target_, "its folder cannot be used (" + std::string(std::strerror(errno)) +
                                 "); choose another folder.");
    }
}

std::string OutputFile::part(const std::string& name) const {
    return (work_->path() / name).string();
}

std::string OutputFile::draft() const {
    return part("draft" + target_.extension().string());
}

void OutputFile::publish(const std::string& path) {
    if (force_ ? replaceKeepingOwner(path, place_) : placeNewFile(path, place_)) {
        return;
    }
    if (errno == EEXIST) {
        refuseToReplace(target_);
    }
    failToWrite(target_, std::string(std::strerror(errno)) + "; choose another folder.");
}

void OutputFile::failForLackOfSpace() const {
    throw Failure(kFileFailed,
                  target_.string() + " could not be written; look whether the disk is full.");
}

} // namespace doccam::host
