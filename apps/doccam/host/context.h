// What every command gets: the options before the command's name, and how it asks to be run.
#pragma once

#include "host/failure.h"
#include "host/interrupt.h"
#include "host/virtual_camera.h"

#include <functional>
#include <memory>
#include <string>

namespace doccam::host {

struct GlobalOptions {
    bool virtualCamera = false;
    int camera = 0;
    bool verbose = false;
    bool json = false;
    bool confined = true; // where a command meets bytes from outside
};

struct Context {
    GlobalOptions options;
    VirtualCameraRequest virtualCamera; // a command may ask for sheets that change

    // Set by the chosen command while the command line is read, and run once the process sees its
    // cameras. Returns an exit code; may throw Failure.
    std::function<int()> run;

    // When a signal ends the process at once, and with which code, if the command has not ended by
    // then. A command without patience ends in its own way, however long that takes: scan.
    Interrupt::Patience patience = std::chrono::milliseconds(600);
    int interruptedCode = kInterrupted;

    // Set before run is called.
    std::unique_ptr<Interrupt> interrupt;
};

} // namespace doccam::host
