// Settings, callbacks and helpers. Setters store their value unchecked.
#include "base/pause.h"
#include "capture/session.h"
#include "discovery/camera_name.h"
#include "faults/faults.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <utility>

namespace {

using doccam::state;
constexpr auto kRelaxed = std::memory_order_relaxed;

// Only the first registration counts.
template <typename Callback>
void storeOnce(std::atomic<Callback>& slot, Callback callback) {
    Callback none = nullptr;
    slot.compare_exchange_strong(none, callback, std::memory_order_acq_rel);
}

} // namespace

int SetDataCallback(FrameCallback callback) {
    storeOnce(state().settings.pGetVideoStream, callback);
    return 0;
}

int SetWebDataCallback(WebFrameCallback callback) {
    storeOnce(state().settings.pGetVideoWebStream, callback);
    return 0;
}

int SetFaultCallback(FaultCallback callback) {
    state().settings.faultCallback.store(callback, std::memory_order_release);
    return 0;
}

int doccam_fault_cause() {
    return doccam::currentCause();
}

int SetRotate(int angle) {
    state().settings.RotateAngle.store(angle, kRelaxed);
    return 0;
}

void SetVideoFormat(int format) {
    state().settings.CameraFormat.store(format > 1 ? 1 : format, kRelaxed);
}

void SetCutType(int value) {
    state().settings.cutType.store(value, kRelaxed);
}

void SetColorMode(int value) {
    state().settings.colorMode.store(value, kRelaxed);
}

void SetFileFormat(int value) {
    state().settings.fileFormat.store(value, kRelaxed);
}

int GetFileFormat() {
    return state().settings.fileFormat.load(kRelaxed);
}

void SetJpgQuality(int value) {
    state().settings.jpgQuality.store(value, kRelaxed);
}

void SetDelBlackedge(int value) {
    state().settings.isDelBlackedge.store(value, kRelaxed);
}

void SetDelBackColor(int value) {
    state().settings.isDelBcakColor.store(value, kRelaxed);
}

int SetPageEngine(int engine) {
    if (engine != doccam::kContractEngine && engine != doccam::kPageEngine) {
        return -1;
    }
    state().settings.pageEngine.store(engine, kRelaxed);
    return 0;
}

void setGrabSize(int width, int height) {
    doccam::setGrabSize(state().session, {width, height});
}

void Sleep(int ms) {
    doccam::pauseFor(ms);
}

std::vector<std::string> split(std::string text, std::string pattern) {
    return doccam::splitText(std::move(text), pattern);
}

int HttpUpFile(char* /*file*/, char* /*url*/) {
    return 0;
}
