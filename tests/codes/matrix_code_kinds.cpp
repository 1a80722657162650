// The matrix and stacked codes among the kinds.
#include "code_kinds.h"
#include "code_texts.h"

#include <zint.h>

namespace doccam::test {

namespace {

PrintedCode printed(Code code) {
    PrintedCode result{std::move(code), {}, {}};
    result.texts = {result.code.text};
    return result;
}

PrintedCode plain(int symbology, const std::string& text, int version = 0) {
    return printed({symbology, text, text, -1, version, DATA_MODE});
}

PrintedCode unicode(int symbology, const std::string& text) {
    return printed({symbology, text, text, -1, 0, UNICODE_MODE});
}

PrintedCode gs1(int symbology, const GS1Elements& elements) {
    PrintedCode result{{symbology, toZint(elements), {}, -1, 0, GS1_MODE}, readForms(elements), {}};
    result.code.text = result.texts.front();
    return result;
}

std::string foreign(cv::RNG& random) {
    return "Stra\u00dfe " + randomDigits(random, 4) + ", K\u00f6ln \u20ac \u6587\u66f8";
}

// In Latin 1 no mark of the encoding is needed.
std::string accented(cv::RNG& random) {
    return "Caf\u00e9 M\u00fcller " + randomDigits(random, 6);
}

PrintedCode rectangularDataMatrix(cv::RNG& random) {
    constexpr int kSixteenByFortyEight = 30;
    constexpr int kTwelveByThirtySix = 28;
    return random.uniform(0, 2) == 0
               ? plain(BARCODE_DATAMATRIX, "DOC-" + randomCapitals(random, 12), kTwelveByThirtySix)
               : plain(BARCODE_DATAMATRIX, randomLink(random), kSixteenByFortyEight);
}

// zint draws hexagons five times as wide as asked for.
PrintedCode maxiCode(cv::RNG& random) {
    PrintedCode code = plain(BARCODE_MAXICODE, randomCapitals(random, 30));
    code.scale = 2;
    code.module = 10;
    return code;
}

std::vector<CodeKind> qrKinds() {
    return {
        {"QR", true, [](cv::RNG& random) { return printed(qrCode(randomLink(random), 2)); }},
        {"QR, 400 letters", true,
         [](cv::RNG& random) { return printed(qrCode(randomProse(random, 400), 1)); }},
        {"QR, UTF-8", true,
         [](cv::RNG& random) { return unicode(BARCODE_QRCODE, foreign(random)); }},
        {"QR, Kanji", true,
         [](cv::RNG& random) {
             return unicode(BARCODE_QRCODE, "\u6587\u66f8\u756a\u53f7" + randomDigits(random, 6));
         }},
        {"Micro QR", true,
         [](cv::RNG& random) { return plain(BARCODE_MICROQR, randomCapitals(random, 8)); }},
    };
}

std::vector<CodeKind> dataMatrixKinds() {
    return {
        {"Data Matrix", true,
         [](cv::RNG& random) { return plain(BARCODE_DATAMATRIX, randomLink(random)); }},
        {"Data Matrix, 200 letters", true,
         [](cv::RNG& random) { return plain(BARCODE_DATAMATRIX, randomProse(random, 200)); }},
        {"Data Matrix, rectangular", true, rectangularDataMatrix},
        {"Data Matrix, GS1", true,
         [](cv::RNG& random) { return gs1(BARCODE_DATAMATRIX, randomBatch(random)); }},
        {"Data Matrix, Latin 1", true,
         [](cv::RNG& random) { return unicode(BARCODE_DATAMATRIX, accented(random)); }},
    };
}

std::vector<CodeKind> otherKinds() {
    constexpr int kFullFromThisSize = 9; // of Aztec's sizes
    return {
        {"Aztec, compact", true,
         [](cv::RNG& random) { return plain(BARCODE_AZTEC, randomCapitals(random, 12)); }},
        {"Aztec, full", true,
         [](cv::RNG& random) {
             return plain(BARCODE_AZTEC, randomProse(random, 120), kFullFromThisSize);
         }},
        {"PDF417", true,
         [](cv::RNG& random) { return plain(BARCODE_PDF417, randomProse(random, 40)); }},
        {"PDF417, 300 letters", true,
         [](cv::RNG& random) { return plain(BARCODE_PDF417, randomProse(random, 300)); }},
        {"PDF417, compact", true,
         [](cv::RNG& random) { return plain(BARCODE_PDF417COMP, randomProse(random, 40)); }},
        {"MaxiCode", true, maxiCode},
    };
}

} // namespace

std::vector<CodeKind> matrixCodeKinds() {
    std::vector<CodeKind> kinds = qrKinds();
    for (const std::vector<CodeKind>& more : {dataMatrixKinds(), otherKinds()}) {
        kinds.insert(kinds.end(), more.begin(), more.end());
    }
    return kinds;
}

} // namespace doccam::test
