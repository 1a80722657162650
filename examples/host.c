/* A minimal host: opens the first camera, counts frames while a still is taken, closes. */
#include <doccam/doccam.h>

#include <stdio.h>

static volatile int frames;

static void onFrame(unsigned char* pixels, int width, int height) {
    (void)pixels, (void)width, (void)height;
    ++frames;
}

int main(int argc, char** argv) {
    const char* target = argc > 1 ? argv[1] : "page.jpg";
    if (doccam_version() < DOCCAM_VERSION) {
        fprintf(stderr, "this host needs doccam %s\n", DOCCAM_VERSION_STRING);
        return 3;
    }
    if (getDeviceCount() < 1) {
        fprintf(stderr, "no supported document camera is attached\n");
        return 3;
    }
    fprintf(stderr, "camera: %s\n", getCameraName(0));
    SetVideoFormat(0); /* MJPEG */
    SetDataCallback(onFrame);
    const int code = openCamera(0, 1600, 1200);
    if (code != DOCCAM_OK) {
        fprintf(stderr, "%s\n", doccam_result_text(DOCCAM_OPEN, code));
        return 4;
    }
    captureImage(target);
    closeCamera();
    fprintf(stderr, "%d frames seen, still in %s\n", frames, target);
    return frames > 0 ? 0 : 4;
}
