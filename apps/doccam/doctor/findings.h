// What the doctor has found out, before it draws conclusions.
#pragma once

#include <string>
#include <vector>

namespace doccam::host {

// A process that has a node open.
struct Holder {
    int process = 0;
    std::string name;
};

// What came of streaming a few frames. Step and error stay empty where every request was granted.
struct Trial {
    bool held = false;
    std::string capture; // "mjpeg 3264x2448"
    std::string step;    // the request that failed, as "VIDIOC_STREAMON"
    int error = 0;       // its errno
    int frames = 0;
    int shortFrames = 0;
    int framesWithoutJpeg = 0;
};

// A video node that delivers pictures.
struct Node {
    std::string path;
    std::string name;
    std::string vendor; // four hexadecimal digits; empty for what is not on USB
    std::string product;
    std::string group;          // that the node belongs to
    bool supported = false;     // its id is among the supported models
    bool secondOfModel = false; // the library finds the first camera of a model only
    int openError = 0;
    std::vector<Holder> holders;
    Trial trial;
};

// "vvvv:pppp"; empty for what is not on USB.
inline std::string modelOf(const Node& node) {
    return node.vendor.empty() ? "" : node.vendor + ":" + node.product;
}

// The table of supported models that the library reads.
struct ModelTable {
    std::string file; // empty: the built-in table, which addTo would replace
    std::string addTo;
    std::string text;
    std::string error; // why the file is not used, though it should be
};

struct Findings {
    bool deviceManager = true;
    std::vector<Node> nodes;
    ModelTable table;
};

} // namespace doccam::host
