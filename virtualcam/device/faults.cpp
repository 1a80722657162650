#include "device/faults.h"

#include <algorithm>

namespace doccam::virtualcam {

namespace {

// "VIDIOC_DQBUF" and "DQBUF" name the same request.
std::string shortName(const std::string& request) {
    static const std::string kPrefix = "VIDIOC_";
    return request.starts_with(kPrefix) ? request.substr(kPrefix.size()) : request;
}

bool countsFrames(FaultKind kind) {
    return kind != FaultKind::kCall && kind != FaultKind::kGrant && kind != FaultKind::kBufferBytes;
}

} // namespace

void FaultPlan::add(const Fault& fault) {
    pending_.push_back({fault, 0});
    pending_.back().fault.request = shortName(fault.request);
}

void FaultPlan::clear() {
    pending_.clear();
}

bool FaultPlan::strikes(Pending& pending) {
    ++pending.seen;
    return pending.fault.onwards ? pending.seen >= pending.fault.at
                                 : pending.seen == pending.fault.at;
}

int FaultPlan::noteCall(const std::string& request) {
    int error = 0;
    for (Pending& pending : pending_) {
        if (pending.fault.kind == FaultKind::kCall && pending.fault.request == shortName(request) &&
            strikes(pending) && error == 0) {
            error = pending.fault.error;
        }
    }
    return error;
}

std::vector<Fault> FaultPlan::noteFrame() {
    std::vector<Fault> due;
    for (Pending& pending : pending_) {
        if (countsFrames(pending.fault.kind) && strikes(pending)) {
            due.push_back(pending.fault);
        }
    }
    return due;
}

bool FaultPlan::isNextStall(const Pending& pending) {
    Pending next = pending;
    return pending.fault.kind == FaultKind::kStall && strikes(next);
}

bool FaultPlan::stallsNextFrame() const {
    return std::any_of(pending_.begin(), pending_.end(), isNextStall);
}

void FaultPlan::forgetNextStall() {
    std::erase_if(pending_, isNextStall);
}

const Fault* FaultPlan::find(FaultKind kind) const {
    const Fault* found = nullptr;
    for (const Pending& pending : pending_) {
        if (pending.fault.kind == kind) {
            found = &pending.fault;
        }
    }
    return found;
}

std::uint32_t FaultPlan::granted(std::uint32_t count) const {
    const Fault* fault = find(FaultKind::kGrant);
    return fault == nullptr || count == 0 ? count : static_cast<std::uint32_t>(fault->value);
}

std::uint32_t FaultPlan::bufferBytes(std::uint32_t usual) const {
    const Fault* fault = find(FaultKind::kBufferBytes);
    return fault == nullptr ? usual : static_cast<std::uint32_t>(fault->value);
}

} // namespace doccam::virtualcam
