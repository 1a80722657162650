// The version, and the results of the exported functions as sentences.
#include <doccam/doccam.h>

namespace doccam {
namespace {

struct ResultText {
    DoccamOperation operation;
    DoccamResult result;
    const char* text;
};

constexpr ResultText kTexts[] = {
    {DOCCAM_DEVICES, DOCCAM_DEVICES_NO_UDEV, "The device manager (udev) cannot be used."},

    {DOCCAM_SIZE, DOCCAM_OK, "The frame size was written, if the index is one of the list's."},
    {DOCCAM_SIZE, DOCCAM_SIZE_NONE_IN_FORMAT, "The camera has no frame size in the chosen format."},
    {DOCCAM_SIZE, DOCCAM_SIZE_NONE_KNOWN, "No frame size is known; enumerate the camera's first."},

    {DOCCAM_OPEN, DOCCAM_OK, "The camera is streaming."},
    {DOCCAM_OPEN, DOCCAM_OPEN_NO_CAMERA, "There is no such camera."},
    {DOCCAM_OPEN, DOCCAM_OPEN_NO_SIZE,
     "The camera names no frame size, or no picture can have the one asked for."},
    {DOCCAM_OPEN, DOCCAM_OPEN_NO_NODE, "The camera's device node cannot be opened."},
    {DOCCAM_OPEN, DOCCAM_OPEN_TRY_FORMAT, "The driver refuses to try the format."},
    {DOCCAM_OPEN, DOCCAM_OPEN_SET_FORMAT, "The driver refuses to set the format."},
    {DOCCAM_OPEN, DOCCAM_OPEN_GET_FORMAT, "The driver does not say which format it has set."},
    {DOCCAM_OPEN, DOCCAM_OPEN_REQUEST_BUFFERS, "The driver refuses to provide buffers."},
    {DOCCAM_OPEN, DOCCAM_OPEN_TOO_FEW_BUFFERS, "The driver provides too few buffers."},
    {DOCCAM_OPEN, DOCCAM_OPEN_QUERY_BUFFER, "The driver does not describe its buffers."},
    {DOCCAM_OPEN, DOCCAM_OPEN_MAP_BUFFER, "A buffer of the driver cannot be mapped."},
    {DOCCAM_OPEN, DOCCAM_OPEN_QUEUE_BUFFER, "The driver does not accept its buffers."},
    {DOCCAM_OPEN, DOCCAM_OPEN_STREAM_ON, "The driver does not start the stream."},
    {DOCCAM_OPEN, DOCCAM_OPEN_INTERNAL, "The library failed; memory may be short."},

    {DOCCAM_CONTROL_GET, DOCCAM_OK, "The control was read."},
    {DOCCAM_CONTROL_GET, DOCCAM_CONTROL_GET_UNAVAILABLE,
     "No camera is streaming, or the camera has no such control."},
    {DOCCAM_CONTROL_GET, DOCCAM_CONTROL_GET_UNREADABLE, "The control cannot be read."},

    {DOCCAM_CONTROL_SET, DOCCAM_OK, "The control was set."},
    {DOCCAM_CONTROL_SET, DOCCAM_CONTROL_SET_REFUSED,
     "No camera is streaming, or the camera refuses the value."},

    {DOCCAM_CONTROL_RESET, DOCCAM_CONTROL_RESET_UNAVAILABLE,
     "No camera is streaming, or the camera has no such control."},
    {DOCCAM_CONTROL_RESET, DOCCAM_CONTROL_RESET_UNREADABLE, "The control cannot be read."},
    {DOCCAM_CONTROL_RESET, DOCCAM_CONTROL_RESET_REFUSED, "The control cannot be set."},

    {DOCCAM_FOCUS, DOCCAM_OK, "The camera focuses, if it has the control for it."},
    {DOCCAM_FOCUS, DOCCAM_FOCUS_NO_SESSION, "No camera is streaming."},
    {DOCCAM_FOCUS, DOCCAM_FOCUS_UNREADABLE, "The focus cannot be read."},
    {DOCCAM_FOCUS, DOCCAM_FOCUS_REFUSED, "The focus cannot be set."},
    {DOCCAM_FOCUS, DOCCAM_FOCUS_LEFT_OFF, "Auto-focus is off and cannot be switched on again."},

    {DOCCAM_STILL, DOCCAM_OK, "A still was requested; it was saved if the file exists."},
    {DOCCAM_STILL, DOCCAM_STILL_NOT_REQUESTED,
     "No camera is streaming, or the path is missing or too long."},

    {DOCCAM_QUEUE, DOCCAM_OK, "The file is queued."},
    {DOCCAM_QUEUE, DOCCAM_QUEUE_NO_FILE, "There is no such file to queue."},

    {DOCCAM_PDF, DOCCAM_OK, "The PDF is there."},
    {DOCCAM_PDF, DOCCAM_PDF_NOTHING_QUEUED, "No file is queued, or the path is missing."},
    {DOCCAM_PDF, DOCCAM_PDF_NOT_WRITTEN, "The PDF was not written."},

    {DOCCAM_MERGE, DOCCAM_OK, "The queue was settled; a file is at the path."},
    {DOCCAM_MERGE, DOCCAM_MERGE_TOO_FEW_QUEUED, "Fewer than two files are queued."},
    {DOCCAM_MERGE, DOCCAM_MERGE_NO_PICTURE, "The queue was emptied; no file is at the path."},

    {DOCCAM_GRAB, DOCCAM_OK, "A frame was taken."},
    {DOCCAM_GRAB, DOCCAM_GRAB_FAILED, "The driver failed to hand over a frame."},
    {DOCCAM_GRAB, DOCCAM_GRAB_NO_BUFFER, "The driver named a buffer that does not exist."},

    {DOCCAM_DECODE, DOCCAM_OK, "The JPEG was decoded."},
    {DOCCAM_DECODE, DOCCAM_DECODE_FAILED,
     "The data is no colour JPEG that can be decoded, or the output cannot hold it."},

    {DOCCAM_COPY_LINE, DOCCAM_OK, "The line was copied."},
    {DOCCAM_COPY_LINE, DOCCAM_COPY_LINE_NOT_24_BITS, "Only pixels of 24 bits can be copied."},

    {DOCCAM_OUTLINE, DOCCAM_OK, "The sheet's outline was found."},
    {DOCCAM_OUTLINE, DOCCAM_OUTLINE_NONE, "The frame shows no outline."},
    {DOCCAM_OUTLINE, DOCCAM_OUTLINE_TOO_SMALL, "No outline in the frame is large enough."},

    {DOCCAM_VIEW, DOCCAM_OK, "The view was changed."},
    {DOCCAM_VIEW, DOCCAM_VIEW_NO_SESSION, "No camera is streaming."},
};

// Two operations return a value instead of DOCCAM_OK.
const char* otherText(int operation, int result) {
    switch (operation) {
    case DOCCAM_DEVICES:
        return result >= 0 ? "The result is the number of cameras." : nullptr;
    case DOCCAM_CONTROL_RESET:
        return "The control has its default, which is the result.";
    default:
        return nullptr;
    }
}

} // namespace
} // namespace doccam

int doccam_version() {
    return DOCCAM_VERSION;
}

const char* doccam_result_text(int operation, int result) {
    const char* text = doccam::otherText(operation, result);
    bool known = false;
    for (const doccam::ResultText& row : doccam::kTexts) {
        known = known || row.operation == operation;
        if (row.operation == operation && row.result == result) {
            text = row.text;
        }
    }
    if (text != nullptr) {
        return text;
    }
    return known ? "The operation has no such result." : "There is no such operation.";
}
