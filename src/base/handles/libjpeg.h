// libjpeg's header, which needs types of the C library before it.
#pragma once

#include <cstddef>
#include <cstdio>

// clang-format off
extern "C" {
#include <jpeglib.h>
#include <jerror.h>
}
// clang-format on
