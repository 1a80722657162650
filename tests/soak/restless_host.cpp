#include "soak/restless_host.h"

#include <doccam/doccam.hpp>

#include <utility>

namespace doccam::test {

RestlessHost::RestlessHost(std::string folder)
  : folder_(std::move(folder))
  , thread_([this] { run(); }) {}

RestlessHost::~RestlessHost() {
    stop_ = true;
    thread_.join();
}

int RestlessHost::between(int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random_);
}

void RestlessHost::run() {
    while (!stop_) {
        act();
        ++actions_;
        actions_.notify_all();
    }
}

void RestlessHost::waitForActions(long count) const {
    for (long now = actions_; now < count; now = actions_) {
        actions_.wait(now);
    }
}

void RestlessHost::act() {
    switch (between(0, 23)) {
    case 0: {
        const char* const names[] = {"/still.jpg", "/still.png", "/still.bmp", "/still.pdf"};
        captureImage((folder_ + names[between(0, 3)]).c_str());
        break;
    }
    case 1:
        RecogBarQrCode(between(0, 1));
        break;
    case 2:
        SetVideoCtlParam(between(0, 6), between(-10, 300));
        break;
    case 3:
        SetVideoCtlDefaultParam(between(0, 6));
        break;
    case 4: {
        int ignored = 0;
        GetVideoCtlParam(between(0, 6), &ignored, &ignored, &ignored, &ignored);
        break;
    }
    case 5:
        ManualFocus();
        break;
    case 6:
        ManualFocusEx();
        break;
    default:
        between(0, 1) == 0 ? changeSetting() : changeView();
        break;
    }
}

void RestlessHost::changeSetting() {
    switch (between(0, 8)) {
    case 0:
        SetCutType(between(0, 2));
        break;
    case 1:
        SetColorMode(between(0, 3));
        break;
    case 2:
        SetDelBlackedge(between(0, 1));
        break;
    case 3:
        SetDelBackColor(between(0, 1));
        break;
    case 4:
        SetJpgQuality(between(0, 100));
        break;
    case 5:
        SetRotate(between(-1, 4));
        break;
    case 6:
        SetVideoFormat(between(0, 1)); // takes effect in the next session
        break;
    case 7:
        SetPageEngine(between(-1, 2));
        break;
    default:
        SetFileFormat(between(0, 9));
        break;
    }
}

void RestlessHost::changeView() {
    switch (between(0, 7)) {
    case 0:
        SetWebFormSize(between(-1, 640), between(-1, 480));
        break;
    case 1:
        Web_RotateL();
        break;
    case 2:
        Web_RotateR();
        break;
    case 3:
        Web_TrueSize();
        break;
    case 4:
        Web_BestSize();
        break;
    case 5:
        Web_SetMoveOffet(between(-300, 300), between(-300, 300));
        break;
    case 6:
        Web_ZoomOut();
        break;
    default:
        Web_ZoomIn();
        break;
    }
}

} // namespace doccam::test
