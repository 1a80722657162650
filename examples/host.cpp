// A minimal host in C++: finds the sheet in one live frame and saves the frame with its outline.
#include <doccam/doccam.hpp>

#include <cstdio>
#include <future>

namespace {

std::promise<cv::Mat> firstFrame;

void onFrame(unsigned char* pixels, int width, int height) {
    static bool taken = false;
    if (!taken) {
        taken = true;
        firstFrame.set_value(cv::Mat(height, width, CV_8UC3, pixels).clone());
    }
}

} // namespace

int main(int argc, char** argv) {
    char fallback[] = "outline.png";
    char* const target = argc > 1 ? argv[1] : fallback;
    SetVideoFormat(0); // MJPEG
    SetDataCallback(onFrame);
    if (const int code = openCamera(0, 1600, 1200); code != DOCCAM_OK) {
        std::fprintf(stderr, "%s\n", doccam_result_text(DOCCAM_OPEN, code));
        return 4;
    }
    cv::Mat frame = firstFrame.get_future().get();
    closeCamera();

    const int found = DrawingEdge(frame.data, frame.cols, frame.rows, 1);
    std::fprintf(stderr, "%s\n", doccam_result_text(DOCCAM_OUTLINE, found));
    return SaveImage(target, rotateImage(frame, 180));
}
