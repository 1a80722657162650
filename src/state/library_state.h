// The one record of everything the library knows between two calls.
//
// Field names are fixed. "host" below is any thread of the
// host, "stream" the streaming thread; a field both touch is atomic. Settings are single relaxed
// values that take effect at their next use; the hand-shakes use release and acquire.
#pragma once

#include "state/shared_text.h"

#include <doccam/types.h>

#include <hpdf.h>
#include <linux/videodev2.h>
#include <opencv2/core/mat.hpp>
#include <sys/types.h>

#include <array>
#include <atomic>
#include <csetjmp>
#include <memory>
#include <string>
#include <vector>

struct CvSeq;

namespace doccam {

struct MjpegDecoder;
class PdfWriter;
class StreamingThread;

inline constexpr int kModelRows = 9;
inline constexpr int kNoCodeRequest = -99;
inline constexpr int kNoDescriptor = -1;
inline constexpr pid_t kNoProcess = 0;
inline constexpr int kBufferCount = 5;
inline constexpr int kCropToSheet = 1; // of cutType

using BufferPointer = unsigned char*;

struct LibraryState {
    // The session: host writes while no streaming thread runs, stream reads.
    std::atomic<int> cam_fd{kNoDescriptor}; // getCameraName may take it away in mid-stream
    std::atomic<bool> bKeep{false};         // a session is streaming
    std::atomic<int> CameraFormat{1};       // 0 MJPEG, else YUYV
    bool isMjpegMode = true;                // unused
    int buffer_count = kBufferCount;        // never changes
    std::unique_ptr<BufferPointer[]> video_buffer_ptr{new BufferPointer[kBufferCount]{}};
    std::array<std::size_t, kBufferCount> mappedLength{}; // bytes mapped at each of these pointers
    char pix_format[64] = {};
    std::atomic<int> nWidth{0};
    std::atomic<int> nHeight{0};
    std::atomic<int> nSize{0};
    std::atomic<bool> isInsert1000M{false};
    std::atomic<MjpegDecoder*> pdecode{nullptr};
    std::shared_ptr<StreamingThread> streamingThread; // of the current session
    pid_t sessionProcess = kNoProcess;                // opened it; a forked child is another

    // Discovery: host only.
    int deviceCount = 0;
    std::array<std::string, 10> devices;
    std::string cameraName;                          // what getCameraName returned last
    std::array<const char*, kModelRows> gpyVendor{}; // null beyond the configured rows
    std::array<const char*, kModelRows> gpyProduct{};
    std::vector<int> formatList; // 0 MJPEG, 1 YUYV, 2 other, in driver order
    std::vector<int> yuvWidthList, yuvHeightList;
    std::vector<int> mjpegWidthList, mjpegHeightList;
    std::vector<int> otherfmtWidthList, otherfmtHeightList;

    // Picture controls: host only. ctrl keeps the control used last.
    v4l2_queryctrl qctrl{};
    v4l2_control ctrl{};

    // Frames: stream only, while its thread runs.
    cv::Mat srcimage;  // nWidth x nHeight
    cv::Mat roimage;   // the same turned by a quarter
    cv::Mat zoomimage; // a second preview; a destination prepared elsewhere

    // Callbacks: host sets each once, stream calls.
    std::atomic<FrameCallback> pGetVideoStream{nullptr};
    std::atomic<WebFrameCallback> pGetVideoWebStream{nullptr};
    std::atomic<FaultCallback> faultCallback{nullptr}; // set and cleared at any time
    std::atomic<unsigned char*> WEB_BUF{nullptr};      // preview pixels; host sets and clears
    std::shared_ptr<unsigned char[]> previewPixels;    // owns WEB_BUF; host only
    std::atomic<std::size_t> previewBytes{0};          // WEB_BUF's size; host sets it first

    // Hand-shakes: host raises with release, stream answers with release.
    std::atomic<bool> isShootPhoto{false};
    SharedPath imgSavePath;
    std::atomic<int> IsRecogBarQr{kNoCodeRequest};
    PublishedText BarQrContent;
    std::atomic<bool> reportingFaults{false}; // a request that failed is answered after the telling

    // Settings: host writes, stream reads.
    std::atomic<int> cutType{0};
    std::atomic<int> colorMode{0};
    std::atomic<int> fileFormat{0};
    std::atomic<int> jpgQuality{85};
    std::atomic<int> isDelBlackedge{0};
    std::atomic<int> isDelBcakColor{0};
    std::atomic<int> RotateAngle{0};
    std::atomic<int> RotateFlag{0}; // frames still to drop after a turn

    // The preview's view: host writes, stream reads.
    std::atomic<int> FormWidth{0}, FormHeight{0};
    std::atomic<int> FormStartX{0}, FormStartY{0};
    std::atomic<int> ShowWidth{0}, ShowHeight{0};
    std::atomic<int> ZoomWidth{0}, ZoomHeight{0};
    std::atomic<int> ZoomStartX{0}, ZoomStartY{0};
    std::atomic<int> VideoOffsetX{0}, VideoOffsetY{0};
    std::atomic<double> pZoomScale{50.0}; // percent
    std::atomic<double> pBestScale{50.0};

    // The sheet's outline: stream only. CutPoint holds x0 y0 ... x3 y3 and room for more.
    std::array<int, 40> CutPoint{};
    int CutImgStartX = 0, CutImgStartY = 0, CutImgW = 0, CutImgH = 0;
    int CutLastW = 0, CutLastH = 0;
    std::vector<int> areaList;
    std::vector<CvSeq*> cvSeqList;
    int ManualCutX = 0, ManualCutY = 0, ManualCutW = 0, ManualCutH = 0; // unused

    // PDF output: one thread at a time.
    std::shared_ptr<PdfWriter> pdfWriter; // between pdf_start and pdf_end
    HPDF_Doc pdf = nullptr;               // its handle, stale after pdf_end
    std::jmp_buf env{}; // never armed: the error handler returns instead of jumping
    std::string outPdfPath;
    std::vector<std::string> pdf_filelist;
    std::vector<std::string> img_filelist;
    std::vector<std::string> addFileList; // unused
};

// The one instance.
LibraryState& state();

} // namespace doccam
