// The context of every command: global options, and the function to run.
#pragma once

#include "configuration/config_file.h"
#include "host/failure.h"
#include "host/interrupt.h"
#include "host/virtual_camera.h"

#include <functional>
#include <memory>
#include <string>

namespace doccam::host {

struct GlobalOptions {
    bool virtualCamera = false;
    std::string camera = "0"; // as chosenCamera takes it
    bool verbose = false;
    bool json = false;
    bool quiet = false;   // no progress
    bool confined = true; // while processing untrusted data
};

struct Context {
    GlobalOptions options;
    ConfigChoice configuration;
    VirtualCameraRequest virtualCamera; // a command may request changing sheets

    // Set by a command whose request depends on its options, and run once these have their defaults
    // of the configuration.
    std::function<void()> settle;

    // Set by the chosen command while the command line is parsed, and run once the process sees its
    // cameras. Returns an exit code; may throw Failure.
    std::function<int()> run;

    // The time after a signal until the process is ended, with interruptedCode, if the command has
    // not ended by itself. At the first Ctrl-C scan finishes in its own time.
    Interrupt::Patience patience = std::chrono::milliseconds(600);
    int interruptedCode = kInterrupted;
    Interrupt::CtrlC ctrlC = Interrupt::CtrlC::kEnds;

    // Set before run is called.
    std::unique_ptr<Interrupt> interrupt;
};

} // namespace doccam::host
