// doccam serve: the live view and the tray of pages in a browser.
#pragma once

#include "serve/live/live_camera.h"

#include <string>

namespace doccam::serve {

struct ServeOptions {
    CameraChoice choice;
    std::string address = "127.0.0.1";
    int port = 0; // any free one
    bool json = false;
    bool confined = true;
    bool noSpool = false; // no page outlives the server
};

// Prints the address to open, serves until the process is asked to end, and returns an exit code.
// Waits for a camera if there is none at first. Throws Failure if the server cannot listen.
int serve(const ServeOptions& options, host::Interrupt& interrupt);

} // namespace doccam::serve
