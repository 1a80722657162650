// The doctor's findings.
#pragma once

#include <string>
#include <vector>

namespace doccam::host {

// A process that has a node open.
struct Holder {
    int process = 0;
    std::string name;
};

// The result of streaming a few frames. step and error are empty if every request succeeded.
struct Trial {
    bool held = false;
    std::string capture; // "mjpeg 3264x2448"
    std::string step;    // the failed request, such as "VIDIOC_STREAMON"
    int error = 0;       // its errno
    int frames = 0;
    int shortFrames = 0;
    int framesWithoutJpeg = 0;
};

// A video node that delivers pictures.
struct Node {
    std::string path;
    std::string name;
    std::string vendor; // four hexadecimal digits; empty if not on USB
    std::string product;
    std::string group;          // the node's group
    bool supported = false;     // its id is among the supported models
    bool secondOfModel = false; // the library finds only the first camera of a model
    int openError = 0;
    std::vector<Holder> holders;
    Trial trial;
};

// "vvvv:pppp"; empty if not on USB.
inline std::string modelOf(const Node& node) {
    return node.vendor.empty() ? "" : node.vendor + ":" + node.product;
}

// The table of supported models that the library reads.
struct ModelTable {
    std::string file; // empty: the built-in table, which addTo would replace
    std::string addTo;
    std::string text;
    std::string error; // why the file cannot be used
};

struct Findings {
    bool deviceManager = true;
    std::vector<Node> nodes;
    ModelTable table;
};

} // namespace doccam::host
