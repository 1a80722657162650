#include "preload/call_log.h"

namespace doccam::virtualcam {

namespace {

constexpr std::size_t kKept = 100000;

} // namespace

void CallLog::note(const char* request, int node, int descriptor, int result, int error) {
    const std::lock_guard lock(mutex_);
    if (entries_.size() == kKept) {
        entries_.pop_front();
    }
    entries_.push_back({request, node, descriptor, result, error});
    ++counts_[request];
}

std::vector<Call> CallLog::calls() const {
    const std::lock_guard lock(mutex_);
    std::vector<Call> all;
    for (const Entry& entry : entries_) {
        all.push_back({entry.request, entry.node, entry.descriptor, entry.result, entry.error});
    }
    return all;
}

int CallLog::count(const std::string& request) const {
    const std::string name = request.starts_with("VIDIOC_") ? request.substr(7) : request;
    const std::lock_guard lock(mutex_);
    const auto found = counts_.find(name);
    return found == counts_.end() ? 0 : found->second;
}

void CallLog::clear() {
    const std::lock_guard lock(mutex_);
    entries_.clear();
    counts_.clear();
}

} // namespace doccam::virtualcam
