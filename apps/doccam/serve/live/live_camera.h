// The served camera: opened, monitored, and reopened when it is plugged in again.
#pragma once

#include "camera/camera_session.h"
#include "camera/controls.h"
#include "camera/page_settings.h"
#include "codes/picture_codes.h"
#include "scan/page_source.h"
#include "serve/commands/event_feed.h"
#include "serve/commands/requests.h"
#include "serve/live/frame_looks.h"
#include "serve/live/picture_handover.h"
#include "serve/live/refusals.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace doccam::serve {

struct CameraChoice {
    int index = 0;
    std::optional<host::Format> format;
    std::optional<host::Size> size;
};

// Calls the library, so use it only on the command thread. At most one at a time. Every command
// throws Unplugged while there is no camera.
class LiveCamera {
  public:
    // Gives all looks its frames. Publishes the topics "camera", "view", "place", "settings",
    // "controls" and "rate".
    LiveCamera(const CameraChoice& choice, const host::Interrupt& interrupt,
               PictureHandover& handover, const std::vector<FrameLooks*>& looks, EventFeed& events);
    ~LiveCamera();

    // Opens the camera. Throws Failure on failure; watch() will try again.
    void open();

    // Call several times a second: notices when the camera is unplugged, looks for it, counts
    // frames.
    void watch();

    bool plugged() const { return session_.has_value(); }

    void setForm(host::Size form);
    // Zooms by steps of four percentage points; negative ones make the picture smaller.
    void zoom(int steps);
    void showTrueSize();
    void showWhole();
    void move(int dx, int dy);
    void turn(int quarterTurns);
    void change(const Settings& settings);

    const Settings& settings() const { return settings_; }

    // The topic "settings".
    Json settingsTopic() const;

    void setControl(const std::string& name, std::optional<int> value);
    void focus();

    // What becomes a page of the next frame by the settings. Throws NoSheet if there is no sheet to
    // crop to. A still is written to work and removed.
    host::PageDraft draft(const std::string& work);

    // The codes in the next frame.
    std::vector<host::Code> readCodes();

  private:
    using Clock = std::chrono::steady_clock;

    // Looks at frames again afterwards: a session that waits for a frame takes its listener away.
    struct Watching {
        LiveCamera& camera;

        ~Watching() { camera.watchFrames(); }
    };

    host::CameraSession& session();
    int findCamera() const;
    void tryToReopen();
    void applySettings() const;
    void watchFrames();
    void startPreview();
    void lose(const std::string& reason);
    void countFrames();
    void tellSettings();
    void tellCamera(const std::string& message);
    void tellView();
    void tellControls();

    CameraChoice choice_;
    const host::Interrupt& interrupt_;
    PictureHandover& handover_;
    const std::vector<FrameLooks*> looks_;
    EventFeed& events_;
    std::optional<host::CameraSession> session_;
    std::string name_; // name of the camera opened first, which watch() looks for
    Settings settings_;
    int settingsVersion_ = 0; // orders settings updates
    host::ChosenControls controls_;
    host::Size form_{1280, 960};
    Clock::time_point lastLook_, lastCount_;
    std::uint64_t countedFrames_ = 0;
    host::Silence silence_;
    bool isSilent_ = false;
};

} // namespace doccam::serve
