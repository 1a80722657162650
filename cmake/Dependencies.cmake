# The library's dependencies, as packaged by Debian.
find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(OpenCV 4 REQUIRED COMPONENTS core imgproc imgcodecs)
find_package(JPEG REQUIRED)
find_package(PNG REQUIRED)
find_package(ZLIB REQUIRED)
pkg_check_modules(FFMPEG REQUIRED IMPORTED_TARGET libavcodec libavutil libswscale)
pkg_check_modules(UDEV REQUIRED IMPORTED_TARGET libudev)
pkg_check_modules(ZBAR REQUIRED IMPORTED_TARGET zbar)
pkg_check_modules(ZXING REQUIRED IMPORTED_TARGET zxing)

# libharu ships neither a pkg-config nor a usable CMake file.
find_path(HPDF_INCLUDE_DIR hpdf.h REQUIRED)
find_library(HPDF_LIBRARY hpdf REQUIRED)
