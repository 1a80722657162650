// Sizes of pages in the world.
#pragma once

namespace doccam::host {

struct Millimetres {
    double width = 0;
    double height = 0;
};

} // namespace doccam::host
