// Reading bar codes and QR codes.
#include "barcode/decoding_cascade.h"
#include "barcode/recognition.h"
#include "base/guarded.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

using doccam::codeKind;
using doccam::guarded;

const char* RecogBarQrCode(int mode) {
    return guarded<const char*>("RecogBarQrCode", "",
                                [=] { return doccam::requestCode(doccam::state().session, mode); });
}

const char* RecogBarQrCodeFromFile(const char* path, int mode) {
    return guarded<const char*>("RecogBarQrCodeFromFile", nullptr,
                                [=] { return doccam::readCodeFromFile(path, codeKind(mode)); });
}

std::string ZbarDecoder(cv::Mat gray, int mode) {
    return doccam::scanOnce(gray, codeKind(mode));
}

std::string GetQRInBinImg(cv::Mat bin, int mode) {
    return doccam::readCodeInBinary(bin, codeKind(mode));
}

std::string GetQR(cv::Mat gray, int mode) {
    return doccam::readCodeInGrey(gray, codeKind(mode));
}

std::string BarQrDecodePro(cv::Mat frame, int mode) {
    return doccam::readCodeOnFrame(frame, codeKind(mode));
}
