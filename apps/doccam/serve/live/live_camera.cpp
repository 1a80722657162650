#include "serve/live/live_camera.h"

#include "host/failure.h"
#include "serve/live/page_drafting.h"
#include "serve/live/preview_receiver.h"

#include <doccam/codes.h>
#include <doccam/doccam.hpp>

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::serve {
namespace {

constexpr std::chrono::seconds kLookEvery{1};
constexpr std::chrono::milliseconds kCountEvery = host::Silence::kLook;
constexpr int kMoveStep = 4;
constexpr double kSecondsForCodes = 1; // other commands wait meanwhile

} // namespace

LiveCamera::LiveCamera(const CameraChoice& choice, const host::Interrupt& interrupt,
                       PictureHandover& handover, const std::vector<FrameLooks*>& looks,
                       EventFeed& events)
  : choice_(choice)
  , interrupt_(interrupt)
  , handover_(handover)
  , looks_(looks)
  , events_(events) {
    settings_.crop = true;
    host::FrameFeed::instance();
    receivePreviews(handover, events);
    tellSettings();
    tellCamera("not opened yet");
    tellView();
}

LiveCamera::~LiveCamera() {
    session_.reset();
    receiveNoPreviews();
}

// Another camera may now have the index of the unplugged one.
int LiveCamera::findCamera() const {
    if (name_.empty()) {
        return choice_.index;
    }
    for (const host::Camera& camera : host::attachedCameras()) {
        if (camera.name == name_) {
            return camera.index;
        }
    }
    throw Unplugged();
}

void LiveCamera::open() {
    const int index = findCamera();
    host::requireCamera(index);
    if (name_.empty()) {
        name_ = host::attachedCameras().at(static_cast<std::size_t>(index)).name;
    }
    const host::Capture capture = host::chooseCapture(index, choice_.format, choice_.size);
    apply(settings_);
    handover_.setForm({});
    session_.emplace(index, capture, interrupt_);
    applySettings();
    startPreview();
    watchFrames();
    controls_.restore();
    countedFrames_ = session_->feed().frames();
    lastCount_ = Clock::now();
    silence_ = {};
    isSilent_ = false;
    tellCamera("");
    tellControls();
}

void LiveCamera::applySettings() const {
    apply(settings_);
    if (settings_.byEngine()) {
        SetColorMode(static_cast<int>(host::Colour::kColour));
    }
}

void LiveCamera::watchFrames() {
    session_->feed().listen([this](unsigned char* pixels, int width, int height) {
        for (FrameLooks* const one : looks_) {
            one->give(pixels, width, height);
        }
    });
}

// A session's first form limits the size of later ones.
void LiveCamera::startPreview() {
    SetWebFormSize(kLargestForm.width, kLargestForm.height);
    SetWebFormSize(form_.width, form_.height);
    handover_.setForm(form_);
    tellView();
}

void LiveCamera::watch() {
    if (!session_) {
        tryToReopen();
        return;
    }
    countFrames();
    if (const auto reason = session_->feed().ended()) {
        lose(*reason);
    } else if (isSilent_) {
        lose("it sends no frames");
    }
}

void LiveCamera::tryToReopen() {
    if (Clock::now() - lastLook_ < kLookEvery) {
        return;
    }
    lastLook_ = Clock::now();
    try {
        open();
    } catch (const host::Interruption&) {
        throw;
    } catch (const std::exception& error) {
        session_.reset();
        tellCamera(error.what());
    }
}

void LiveCamera::lose(const std::string& reason) {
    session_.reset();
    lastLook_ = Clock::now();
    handover_.setForm({});
    for (FrameLooks* const one : looks_) {
        one->forget();
    }
    tellCamera(reason);
    events_.set("rate", Json{{"framesPerSecond", 0}}.dump());
}

void LiveCamera::countFrames() {
    const auto now = Clock::now();
    if (now - lastCount_ < kCountEvery) {
        return;
    }
    const std::uint64_t frames = session_->feed().frames();
    const std::chrono::duration<double> taken = now - lastCount_;
    const double rate = static_cast<double>(frames - countedFrames_) / taken.count();
    if (frames != countedFrames_) {
        silence_ = {};
    } else {
        isSilent_ = silence_.outlasts(host::Silence::processorTime());
    }
    countedFrames_ = frames;
    lastCount_ = now;
    events_.set("rate", Json{{"framesPerSecond", std::round(rate * 10) / 10}}.dump());
}

host::CameraSession& LiveCamera::session() {
    if (!session_ || session_->feed().ended()) {
        throw Unplugged();
    }
    return *session_;
}

void LiveCamera::setForm(host::Size form) {
    const host::Size fitted = fittedForm(form);
    if (fitted == form_) {
        return;
    }
    form_ = fitted;
    if (session_) {
        SetWebFormSize(form_.width, form_.height);
        handover_.setForm(form_);
    }
    tellView();
}

void LiveCamera::zoom(int steps) {
    session();
    for (int step = 0; step < std::abs(steps); ++step) {
        steps > 0 ? Web_ZoomIn() : Web_ZoomOut();
    }
}

void LiveCamera::showTrueSize() {
    session();
    Web_TrueSize();
}

void LiveCamera::showWhole() {
    session();
    Web_BestSize();
}

// In small steps, as a far drag past the picture's near edge would jump to the opposite one.
void LiveCamera::move(int dx, int dy) {
    session();
    while (dx != 0 || dy != 0) {
        const int x = std::clamp(dx, -kMoveStep, kMoveStep);
        const int y = std::clamp(dy, -kMoveStep, kMoveStep);
        Web_SetMoveOffet(x, y);
        dx -= x;
        dy -= y;
    }
}

void LiveCamera::turn(int quarterTurns) {
    session();
    quarterTurns > 0 ? Web_RotateR() : Web_RotateL();
    settings_.quarterTurns = (settings_.quarterTurns + quarterTurns + 4) % 4;
    tellView();
}

void LiveCamera::change(const Settings& settings) {
    settings_ = settings;
    ++settingsVersion_;
    applySettings();
    tellSettings();
}

void LiveCamera::setControl(const std::string& name, std::optional<int> value) {
    session();
    const bool done = controls_.set(name, value);
    tellControls();
    if (!done) {
        throw Refused("the camera refuses to change its " + name);
    }
}

void LiveCamera::focus() {
    session();
    if (ManualFocusEx() != DOCCAM_OK) {
        throw Refused("the camera refuses to focus");
    }
}

host::PageDraft LiveCamera::draft(const std::string& work) {
    host::CameraSession& camera = session();
    const Watching watching{*this};
    return draftPage(camera, settings_, work);
}

std::vector<host::Code> LiveCamera::readCodes() {
    host::CameraSession& camera = session();
    const Watching watching{*this};
    cv::Mat frame = camera.nextFrame();
    cv::cvtColor(frame, frame, cv::COLOR_RGB2GRAY);
    return host::codesIn(frame, DOCCAM_SYMBOLOGIES_ALL, kSecondsForCodes).codes;
}

Json LiveCamera::settingsTopic() const {
    Json topic = toJson(settings_);
    topic["version"] = settingsVersion_;
    return topic;
}

void LiveCamera::tellSettings() {
    events_.set("settings", settingsTopic().dump());
}

void LiveCamera::tellCamera(const std::string& message) {
    Json camera{{"plugged", plugged()}, {"name", name_}, {"message", message}};
    if (session_) {
        camera["format"] = nameOf(session_->capture().format);
        camera["width"] = session_->capture().size.width;
        camera["height"] = session_->capture().size.height;
    }
    events_.set("camera", camera.dump(-1, ' ', false, Json::error_handler_t::replace));
}

void LiveCamera::tellView() {
    events_.set("view", Json{{"width", form_.width},
                             {"height", form_.height},
                             {"quarterTurns", settings_.quarterTurns}}
                            .dump());
}

void LiveCamera::tellControls() {
    Json controls = Json::array();
    for (const host::ControlName& control : host::kControlNames) {
        const auto state = host::readControl(control.selector);
        if (state && state->maximum > state->minimum) {
            controls.push_back({{"name", control.text},
                                {"minimum", state->minimum},
                                {"maximum", state->maximum},
                                {"default", state->defaultValue},
                                {"value", state->value}});
        }
    }
    events_.set("controls", controls.dump());
}

} // namespace doccam::serve
